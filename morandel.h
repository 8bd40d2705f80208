// Morandel: formulas as text, with values for their names, to numbers and texts.
//
// This header brings in all that a host uses:
//     engine/express.h     CExpress, the evaluator, and its records MYPARA and VariableNode
//     engine/functions.h   the functions of the formula language, as a table
//     engine/errors.h      error numbers and messages
//     strfuncs/strfuncs.h  number-to-text conversion, CCStringNode
//     variables/variables.h  CVariableExpressList, named variables computed together
//     checker/checker.h    CExpressionCheck, the faults of a formula
//
// Classes whose names begin with C are global; all else lives in namespace morandel.

#pragma once

#include "checker/checker.h"
#include "engine/errors.h"
#include "engine/express.h"
#include "engine/functions.h"
#include "strfuncs/strfuncs.h"
#include "variables/variables.h"
