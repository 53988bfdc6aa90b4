#include "codegen/FunctionCodeGenerator.h"

FunctionCodeGenerator::~FunctionCodeGenerator() = default;
