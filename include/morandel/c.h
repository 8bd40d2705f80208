/* Prepared formulas for every language that can call C: a formula is made ready once, and computed
   for one set of values or for a million rows, by any number of threads at once.

       morandel_formula *formula;
       morandel_value values[2];
       double total;

       if (!morandel_formula_prepare("preci(price * qty, 2)", MORANDEL_TERMINATED, NULL, 0, 0,
                                     &formula, NULL))
           return;
       values[0] = morandel_number(2.675);
       values[1] = morandel_number(3.0);
       if (morandel_formula_compute(formula, values, 2, result, NULL))
           total = morandel_result_number(result);
       morandel_formula_free(formula);

   Texts are UTF-8 and come with their size in bytes; MORANDEL_TERMINATED as a size stands for a
   text that a NUL ends. Within the library a text is bytes of code page 936, so that two Chinese
   characters have a strlen of 4; a character that this code page does not have is an error that
   names it.

   Calls that can fail give 1 for success and 0 for failure. Where they take a pointer to a pointer
   to an error, it may be NULL; else it is set to NULL on success and to a new error on failure,
   which the caller frees. For a handle that is NULL such calls fail with MORANDEL_REASON_MISUSE
   (morandel_formula_row_error gives 1 with it), counts are 0, texts empty, pointers NULL, and all
   else is as where there is nothing. A handle may be freed while it is NULL. No call throws.

   Formulas and errors never change: threads may share them without locks. A result or a list
   serves one thread at a time. */

#ifndef MORANDEL_C_H
#define MORANDEL_C_H

#include <stddef.h>

#if defined(_WIN32) && !defined(MORANDEL_STATIC)
#ifdef MORANDEL_BUILDING
#define MORANDEL_API __declspec(dllexport)
#else
#define MORANDEL_API __declspec(dllimport)
#endif
#elif defined(_WIN32)
#define MORANDEL_API
#else
#define MORANDEL_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The size of a text that a NUL ends. */
#ifdef __cplusplus
#define MORANDEL_TERMINATED static_cast<size_t>(-1)
#else
#define MORANDEL_TERMINATED ((size_t)-1)
#endif

/* Types of values, names and results. */
enum {
    MORANDEL_DEDUCED = -1, /* of a name: as its place in the formula asks for */
    MORANDEL_INTEGER = 0,  /* of a result: what "int" gives; else as MORANDEL_NUMBER */
    MORANDEL_NUMBER = 1,
    MORANDEL_TEXT = 2
};

/* How a formula is prepared; added up. */
enum {
    /* Names that nobody gives a value to fail where the evaluation meets them, not before: with
       error 0, or with a later one that they lead to, such as 1 in parentheses. */
    MORANDEL_ALLOW_FREE_NAMES = 1,
    /* Formula, names and texts are bytes of code page 936, in and out, and messages as well are
       told for these bytes. Positions then count its characters. */
    MORANDEL_CODE_PAGE_936 = 2
};

/* What errors without a number (-1) and warnings are about. */
enum {
    MORANDEL_REASON_NUMBERED = 0,       /* see the number */
    MORANDEL_REASON_TOO_LONG = 1,       /* more than 512 bytes of code page 936 */
    MORANDEL_REASON_OPEN_LITERAL = 2,   /* a text without its closing quote */
    MORANDEL_REASON_EMPTY = 3,          /* nothing but spaces */
    MORANDEL_REASON_NO_TOKEN = 4,       /* begins with a character that starts nothing */
    MORANDEL_REASON_NO_CHARACTER = 5,   /* code page 936 does not have the character */
    MORANDEL_REASON_NOT_UTF8 = 6,       /* bytes that are no UTF-8 */
    MORANDEL_REASON_HALF_CHARACTER = 7, /* a result that cuts a character of two bytes */
    MORANDEL_REASON_NO_CONVERTER = 8,   /* the system cannot convert code page 936 */
    MORANDEL_REASON_TOO_MANY_NAMES = 9, /* more than 50 */
    MORANDEL_REASON_FREE_NAME = 10,     /* a name without a value */
    MORANDEL_REASON_VALUE_COUNT = 11,   /* other than the count of names */
    MORANDEL_REASON_TEXT_RESULT = 12,   /* a text where numbers were asked for */
    MORANDEL_REASON_NUMBER_RESULT = 13, /* a number where texts were asked for */
    MORANDEL_REASON_NO_MEMORY = 14,
    MORANDEL_REASON_MISUSE = 15, /* a NULL or a range that a call does not take, or a NUL in a
                                    formula */
    /* Warnings. */
    MORANDEL_REASON_NOT_READ = 20,      /* text after a character that starts nothing */
    MORANDEL_REASON_NOT_COMPUTED = 21,  /* text after the end of what is computed */
    MORANDEL_REASON_WRONG_KIND = 22,    /* a text for a number, or a number for a text */
    MORANDEL_REASON_TOO_FEW = 23,       /* arguments */
    MORANDEL_REASON_TOO_MANY = 24,      /* arguments */
    MORANDEL_REASON_CANNOT_SUFFICE = 25 /* a call that fails with any values */
};

typedef struct morandel_formula morandel_formula;
typedef struct morandel_result morandel_result;
typedef struct morandel_error morandel_error;
typedef struct morandel_warnings morandel_warnings;
typedef struct morandel_faults morandel_faults;
typedef struct morandel_texts morandel_texts;

/* A name of a formula: up to 50 in one formula; case counts. */
typedef struct morandel_name {
    const char* text;
    size_t size;
    int type; /* MORANDEL_DEDUCED, MORANDEL_NUMBER or MORANDEL_TEXT */
} morandel_name;

/* A value for a name. Numbers are seen by formulas with 20 decimals. */
typedef struct morandel_value {
    int type; /* MORANDEL_NUMBER or MORANDEL_TEXT */
    double number;
    const char* text;
    size_t size;
} morandel_value;

/* Where in a text something is: from its first byte and character, both counted from 0. */
typedef struct morandel_position {
    size_t byte;
    size_t character;
    size_t bytes; /* how long it is; 0 at the end of a formula */
    size_t characters;
} morandel_position;

/* ---- Formulas ---- */

/* Makes a formula of at most 512 bytes (of code page 936) ready.
   names: what values will be given for, in the order of the values; NULL: all names that the
   formula uses, in the order of their first appearance. A name that stands twice is the first one.
   The type of a name, where it is told, is made ready for; values of the other type are taken as
   well, more slowly. Warnings go by it where it is a number's.
   flags: see MORANDEL_ALLOW_FREE_NAMES and after it; 0 for none.
   On success the caller owns *formula and lets go of it with morandel_formula_free. */
MORANDEL_API int morandel_formula_prepare(const char* text, size_t size, const morandel_name* names,
                                          size_t count, int flags, morandel_formula** formula,
                                          morandel_error** error);

/* One more owner, who also calls morandel_formula_free. Gives the formula back. */
MORANDEL_API morandel_formula* morandel_formula_retain(morandel_formula* formula);
/* The last owner's call destroys the formula. */
MORANDEL_API void morandel_formula_free(morandel_formula* formula);

/* The names that values are given for, by place. The text is the formula's. 0 where there is no
   such place. */
MORANDEL_API size_t morandel_formula_name_count(const morandel_formula* formula);
MORANDEL_API int morandel_formula_name(const morandel_formula* formula, size_t index,
                                       morandel_name* name);
/* The place of a name, or -1. */
MORANDEL_API int morandel_formula_find_name(const morandel_formula* formula, const char* text,
                                            size_t size);

/* The names that the formula uses and nobody gives a value to, in the order of their first
   appearance, with the types that their places ask for: MORANDEL_INTEGER, NUMBER or TEXT. */
MORANDEL_API size_t morandel_formula_free_name_count(const morandel_formula* formula);
MORANDEL_API int morandel_formula_free_name(const morandel_formula* formula, size_t index,
                                            morandel_name* name);

/* What the language accepts and a person rarely means, a report each, by position: text that is
   not read or not computed (1;2 and 1,000), operands of the wrong kind, too few and too many
   arguments, and calls that fail with any values (left("abcd", 2)). The caller frees *warnings. */
MORANDEL_API int morandel_formula_warnings(const morandel_formula* formula,
                                           morandel_warnings** warnings, morandel_error** error);
MORANDEL_API size_t morandel_warnings_count(const morandel_warnings* warnings);
/* Belongs to the list; NULL where there is no such place. */
MORANDEL_API const morandel_error* morandel_warnings_get(const morandel_warnings* warnings,
                                                         size_t index);
MORANDEL_API void morandel_warnings_free(morandel_warnings* warnings);

/* What the checker finds. Names whose type was told as MORANDEL_NUMBER are numbers to it; any other
   name is a variable, which fits everywhere. */
typedef struct morandel_fault {
    int kind;         /* 0 no number before "!", 1 no number, 2 no text, 3 too few arguments, 4 too
                         many; strtrim of a number is told as 1, r2s of a text and a text on the
                         right of "or" as 2 */
    int operand;      /* operand or argument, from 1; 0 for too many arguments */
    int wants;        /* MORANDEL_NUMBER or MORANDEL_TEXT; MORANDEL_DEDUCED where that is not
                         checked. For kinds 3 and 4 it means nothing */
    const char* name; /* of the operator or function, as the checker calls it; it ends with a NUL */
    size_t size;
    morandel_position position; /* of the operator or function */
} morandel_fault;

/* The faults of a formula, in the order in which the checker records them. The caller frees
 *faults. */
MORANDEL_API int morandel_formula_check(const morandel_formula* formula, morandel_faults** faults,
                                        morandel_error** error);
MORANDEL_API size_t morandel_faults_count(const morandel_faults* faults);
/* The name belongs to the list. 0 where there is no such place. */
MORANDEL_API int morandel_faults_get(const morandel_faults* faults, size_t index,
                                     morandel_fault* fault);
MORANDEL_API void morandel_faults_free(morandel_faults* faults);

/* ---- Computing ---- */

/* Computes for values by place, as many as there are names, into a result that is used again and
   again. Nothing is left for the computations after it. Where *error is asked for, the position
   of a failure is found by computing again, so a failure costs more. */
MORANDEL_API int morandel_formula_compute(const morandel_formula* formula,
                                          const morandel_value* values, size_t count,
                                          morandel_result* result, morandel_error** error);

/* The same for numbers alone, where the result is a number: the quickest way, which allocates
   nothing where all names are numbers and the formula has operators and functions of one number
   alone. *result may be one of the numbers. 0 where it fails; morandel_formula_compute tells
   why. */
MORANDEL_API int morandel_formula_compute_numbers(const morandel_formula* formula,
                                                  const double* numbers, size_t count,
                                                  double* result);

/* Prepares, computes once and lets go. names and values go together, count of each. */
MORANDEL_API int morandel_evaluate(const char* text, size_t size, const morandel_name* names,
                                   const morandel_value* values, size_t count,
                                   morandel_result* result, morandel_error** error);

/* Values, for brevity. */
MORANDEL_API morandel_value morandel_number(double number);
MORANDEL_API morandel_value morandel_text(const char* text, size_t size);

/* What was computed last. NULL where memory has run out. */
MORANDEL_API morandel_result* morandel_result_create(void);
MORANDEL_API void morandel_result_free(morandel_result* result);
/* MORANDEL_INTEGER, MORANDEL_NUMBER or MORANDEL_TEXT; MORANDEL_INTEGER after a failure. */
MORANDEL_API int morandel_result_type(const morandel_result* result);
/* 0.0 after a failure; of a text whatever number goes with it. */
MORANDEL_API double morandel_result_number(const morandel_result* result);
/* Ends with a NUL besides its size, which may be NULL; empty where the result is no text. Lives
   until the result has been used again, so a value of that use may be this text. */
MORANDEL_API const char* morandel_result_text(const morandel_result* result, size_t* size);

/* ---- Columns ---- */

/* Values of one name for all rows. Not used fields are 0. */
typedef struct morandel_column {
    int type;              /* MORANDEL_NUMBER or MORANDEL_TEXT */
    const double* numbers; /* of the first row */
    size_t stride;         /* bytes from a row's number to the next one's, (size_t)-8 for the
                              double before it; 0: one for all rows */
    const char* text;      /* the texts of all rows, one after the other */
    const void* offsets;   /* where each begins, and the last one ends: rows + 1 signed integers;
                              NULL: one text for all rows */
    size_t offset_size;    /* bytes of an offset, 4 or 8 */
    size_t size;           /* of the one text; with offsets, of all the bytes */
} morandel_column;

/* What becomes of a row. */
enum {
    MORANDEL_ROW_OK = 0,
    MORANDEL_ROW_FAILED = 1,     /* morandel_formula_row_error tells why */
    MORANDEL_ROW_OTHER_TYPE = 2, /* a text where numbers were asked for, or a number for a text */
    MORANDEL_ROW_NO_TEXT = 3     /* a text, given or made, that cannot be converted */
};

/* Computes a number for each row, by columns of values in the order of the names. results and
   status have room for all rows; a failed row gives 0.0. The same bits as row by row. Succeeds
   whatever becomes of the rows; fails where a column is not as told above. status may be NULL.
   results may overlap a column, and are gathered apart then; status may not. */
MORANDEL_API int morandel_formula_columns(const morandel_formula* formula,
                                          const morandel_column* columns, size_t count, size_t rows,
                                          double* results, unsigned char* status,
                                          morandel_error** error);

/* Computes a text for each row; a failed row gives an empty one. The caller frees *texts. */
MORANDEL_API int morandel_formula_text_columns(const morandel_formula* formula,
                                               const morandel_column* columns, size_t count,
                                               size_t rows, morandel_texts** texts,
                                               unsigned char* status, morandel_error** error);

/* The texts of all rows one after the other, and rows + 1 offsets into them. */
MORANDEL_API const char* morandel_texts_bytes(const morandel_texts* texts, size_t* size);
MORANDEL_API const size_t* morandel_texts_offsets(const morandel_texts* texts);
MORANDEL_API void morandel_texts_free(morandel_texts* texts);

/* The error of a row, from 0, found by computing it again; wants is MORANDEL_NUMBER or
   MORANDEL_TEXT, as the row was asked for. 0 where the row does not fail; *error is NULL then. 1
   also where the call itself fails, with the error of that. */
MORANDEL_API int morandel_formula_row_error(const morandel_formula* formula,
                                            const morandel_column* columns, size_t count,
                                            size_t rows, size_t row, int wants,
                                            morandel_error** error);

/* ---- Errors and warnings ---- */

/* The number of the error table, -1 where there is none. */
MORANDEL_API int morandel_error_number(const morandel_error* error);
/* One of MORANDEL_REASON_... */
MORANDEL_API int morandel_error_reason(const morandel_error* error);
/* In Chinese and in English; both end with a NUL besides their size, which may be NULL. Where the
   system cannot convert code page 936, the table's messages are in English either way. */
MORANDEL_API const char* morandel_error_message(const morandel_error* error, size_t* size);
MORANDEL_API const char* morandel_error_english(const morandel_error* error, size_t* size);
/* The token at which the check or the evaluation failed; of a text that cannot be converted, the
   character in that text. 0 where there is none, which leaves *position alone. */
MORANDEL_API int morandel_error_position(const morandel_error* error, morandel_position* position);
/* The place of the value or name that the error is about, which positions are in then; -1 for the
   formula itself. */
MORANDEL_API int morandel_error_value(const morandel_error* error);
MORANDEL_API void morandel_error_free(morandel_error* error);

/* Messages of the error table by number; NULL where no error has it, or where memory has run out.
   They live as long as the library. */
MORANDEL_API const char* morandel_message(int number, size_t* size);
MORANDEL_API const char* morandel_english_message(int number, size_t* size);

/* ---- The language and the library ---- */

/* A function of the language; all texts end with a NUL and live as long as the library. */
typedef struct morandel_function {
    const char* name;
    const char* kinds;     /* of the arguments: n number, t text; those behind '[' may be left out,
                              '*' repeats the last */
    const char* arguments; /* "text, start, length[, direction]" */
    const char* summary;
    const char* example;
} morandel_function;

/* By place, in the order people look for them; 0 where there is no such place. */
MORANDEL_API size_t morandel_function_count(void);
MORANDEL_API int morandel_function_get(size_t index, morandel_function* function);

/* "10.0.0" */
MORANDEL_API const char* morandel_version(void);

#ifdef __cplusplus
}
#endif

#endif
