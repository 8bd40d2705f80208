// Morandel: formulas as text, with values for their names, to numbers and texts.
//
// This header brings in all but prepared formulas, which are in morandel/formula.hpp and, for C, in
// morandel/c.h:
//     morandel/express.h         CExpress, the evaluator, and its records MYPARA and VariableNode
//     morandel/variables.h       CVariableExpressList, named variables computed together
//     morandel/checker.h         CExpressionCheck, the faults of a formula
//     morandel/language.h        the functions of the formula language
//     morandel/errors.h          error numbers and messages
//     morandel/number_to_text.h  number-to-text conversion
//     morandel/string_node.h     CCStringNode
//
// Classes whose names begin with C are global; all else lives in namespace morandel.

#pragma once

#include <morandel/checker.h>
#include <morandel/errors.h>
#include <morandel/express.h>
#include <morandel/language.h>
#include <morandel/number_to_text.h>
#include <morandel/string_node.h>
#include <morandel/variables.h>
