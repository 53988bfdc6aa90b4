#include "codegen/FunctionCodeGenerator.h"

FunctionCodeGenerator::~FunctionCodeGenerator() = default;
ObjectVariableRetriever::~ObjectVariableRetriever() = default;
