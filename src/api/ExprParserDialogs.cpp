#include "api/ExprParserDialogs.h"

ExprParserDialogs::~ExprParserDialogs() = default;
