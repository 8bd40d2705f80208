/* Every call of the C interface, from C89. Says what does not hold. */

#include <morandel/c.h>
#include <stdio.h>
#include <string.h>

static int problems = 0;

#define EXPECT(condition)                                              \
    do {                                                               \
        if (!(condition)) {                                            \
            printf("%s:%d: not %s\n", __FILE__, __LINE__, #condition); \
            ++problems;                                                \
        }                                                              \
    } while (0)

static int is_text(const char* text, size_t size, const char* wanted) {
    return text != NULL && size == strlen(wanted) && strcmp(text, wanted) == 0;
}

/* A text that a call gives with its size. */
#define EXPECT_TEXT(call, wanted)                  \
    do {                                           \
        const char* given_text = (call);           \
        EXPECT(is_text(given_text, size, wanted)); \
    } while (0)

static morandel_name name(const char* text, int type) {
    morandel_name made;
    made.text = text;
    made.size = MORANDEL_TERMINATED;
    made.type = type;
    return made;
}

/* Two Chinese characters, as UTF-8 and as bytes of code page 936. */
static const char apple[] = "\xE8\x8B\xB9\xE6\x9E\x9C";
static const char apple_936[] = "\xC6\xBB\xB9\xFB";

static morandel_formula* prepared(const char* text) {
    morandel_formula* formula = NULL;
    morandel_error* error = NULL;
    EXPECT(morandel_formula_prepare(text, MORANDEL_TERMINATED, NULL, 0, 0, &formula, &error) == 1);
    EXPECT(formula != NULL && error == NULL);
    return formula;
}

static void test_formulas(void) {
    morandel_name names[2];
    morandel_name found;
    morandel_formula* formula = NULL;
    morandel_error* error = NULL;
    morandel_value values[2];
    morandel_result* result = morandel_result_create();
    double numbers[2];
    double number = 0.0;
    size_t size = 0;

    names[0] = name("price", MORANDEL_NUMBER);
    names[1] = name("name", MORANDEL_DEDUCED);
    EXPECT(morandel_formula_prepare("strcat(name, r2s(price*2))", 26, names, 2, 0, &formula,
                                    &error) == 1);
    EXPECT(error == NULL);
    EXPECT(morandel_formula_name_count(formula) == 2);
    EXPECT(morandel_formula_name(formula, 1, &found) == 1);
    EXPECT(is_text(found.text, found.size, "name") && found.type == MORANDEL_TEXT);
    EXPECT(morandel_formula_name(formula, 2, &found) == 0);
    EXPECT(morandel_formula_find_name(formula, "name", MORANDEL_TERMINATED) == 1);
    EXPECT(morandel_formula_find_name(formula, "Name", 4) == -1);
    EXPECT(morandel_formula_free_name_count(formula) == 0);

    values[0] = morandel_number(6.25);
    values[1] = morandel_text(apple, MORANDEL_TERMINATED);
    EXPECT(morandel_formula_compute(formula, values, 2, result, &error) == 1);
    EXPECT(morandel_result_type(result) == MORANDEL_TEXT);
    EXPECT_TEXT(morandel_result_text(result, &size),
                "\xE8\x8B\xB9\xE6\x9E\x9C"
                "12.5");
    EXPECT(morandel_formula_retain(formula) == formula);
    morandel_formula_free(formula);
    EXPECT(morandel_formula_compute(formula, values, 2, result, NULL) == 1);
    EXPECT(morandel_formula_compute(formula, values, 1, result, &error) == 0);
    EXPECT(morandel_error_reason(error) == MORANDEL_REASON_VALUE_COUNT);
    morandel_error_free(error);
    EXPECT(morandel_result_type(result) == MORANDEL_INTEGER);
    EXPECT_TEXT(morandel_result_text(result, &size), "");
    EXPECT(morandel_formula_compute_numbers(formula, numbers, 1, &number) == 0);
    morandel_formula_free(formula);

    formula = prepared("a/b");
    numbers[0] = 1.0;
    numbers[1] = 4.0;
    EXPECT(morandel_formula_compute_numbers(formula, numbers, 2, &number) == 1);
    EXPECT(number == 0.25);
    numbers[1] = 0.0;
    EXPECT(morandel_formula_compute_numbers(formula, numbers, 2, &number) == 0);
    EXPECT(number == 0.0);
    values[0] = morandel_number(1.0);
    values[1] = morandel_number(2.0);
    EXPECT(morandel_formula_compute(formula, values, 2, result, NULL) == 1);
    EXPECT(morandel_result_type(result) == MORANDEL_NUMBER);
    EXPECT(morandel_result_number(result) == 0.5);
    morandel_formula_free(formula);

    names[0] = name("a", MORANDEL_DEDUCED);
    EXPECT(morandel_formula_prepare("a+strlen(b)", MORANDEL_TERMINATED, names, 1, 0, &formula,
                                    NULL) == 1);
    EXPECT(morandel_formula_free_name_count(formula) == 1);
    EXPECT(morandel_formula_free_name(formula, 0, &found) == 1);
    EXPECT(is_text(found.text, found.size, "b") && found.type == MORANDEL_TEXT);
    EXPECT(morandel_formula_free_name(formula, 1, &found) == 0);
    morandel_formula_free(formula);

    EXPECT(morandel_evaluate("a*2", MORANDEL_TERMINATED, names, values, 1, result, &error) == 1);
    EXPECT(morandel_result_number(result) == 2.0);
    /* What a value is counts, not what its name is said to be. */
    names[0].type = MORANDEL_NUMBER;
    values[0] = morandel_text("abc", 3);
    EXPECT(morandel_evaluate("strlen(a)", 9, names, values, 1, result, &error) == 1);
    EXPECT(morandel_result_number(result) == 3.0);
    /* A text that ends within a character, whatever follows in the memory. */
    values[0] = morandel_text("1\xE6\xA2\xA8", 3);
    EXPECT(morandel_evaluate("strlen(a)", 9, names, values, 1, result, &error) == 0);
    EXPECT(morandel_error_reason(error) == MORANDEL_REASON_NOT_UTF8);
    morandel_error_free(error);
    values[0] = morandel_text("abc", 3);
    EXPECT(morandel_evaluate("if(0, b, a)", 11, names, values, 1, result, &error) == 0);
    EXPECT(morandel_error_reason(error) == MORANDEL_REASON_FREE_NAME);
    morandel_error_free(error);
    EXPECT(morandel_formula_prepare(apple_936, MORANDEL_TERMINATED, NULL, 0, MORANDEL_CODE_PAGE_936,
                                    &formula, NULL) == 1);
    EXPECT(morandel_formula_name(formula, 0, &found) == 1);
    EXPECT(is_text(found.text, found.size, apple_936));
    values[0] = morandel_text(apple_936, 3);
    EXPECT(morandel_formula_compute(formula, values, 1, result, NULL) == 1);
    EXPECT_TEXT(morandel_result_text(result, &size), "\xC6\xBB\xB9");
    morandel_formula_free(formula);
    morandel_result_free(result);
}

static void test_errors(void) {
    morandel_formula* formula = NULL;
    morandel_error* error = NULL;
    morandel_warnings* warnings = NULL;
    morandel_faults* faults = NULL;
    morandel_name told;
    morandel_fault fault;
    morandel_position position;
    size_t size = 0;

    EXPECT(morandel_formula_prepare("1+", 2, NULL, 0, 0, &formula, &error) == 0);
    EXPECT(formula == NULL && error != NULL);
    EXPECT(morandel_error_number(error) == 30);
    EXPECT(morandel_error_reason(error) == MORANDEL_REASON_NUMBERED);
    EXPECT_TEXT(morandel_error_english(error, &size), "an operand is missing after + or -");
    EXPECT(morandel_error_message(error, &size) != NULL && size > 0);
    EXPECT(strcmp(morandel_error_message(error, NULL), morandel_message(30, &size)) == 0);
    EXPECT(strcmp(morandel_error_english(error, NULL), morandel_english_message(30, &size)) == 0);
    EXPECT(morandel_error_position(error, &position) == 1);
    EXPECT(position.byte == 2 && position.character == 2);
    EXPECT(position.bytes == 0 && position.characters == 0);
    EXPECT(morandel_error_value(error) == -1);
    morandel_error_free(error);
    EXPECT(morandel_message(6, &size) == NULL && size == 0);
    EXPECT(morandel_english_message(-1, NULL) == NULL);

    formula = prepared("1+sqrt(\"a\");2");
    EXPECT(morandel_formula_warnings(formula, &warnings, &error) == 1);
    EXPECT(morandel_warnings_count(warnings) == 2);
    EXPECT(morandel_error_reason(morandel_warnings_get(warnings, 0)) == MORANDEL_REASON_WRONG_KIND);
    EXPECT(morandel_error_reason(morandel_warnings_get(warnings, 1)) == MORANDEL_REASON_NOT_READ);
    EXPECT(morandel_warnings_get(warnings, 2) == NULL);
    morandel_warnings_free(warnings);
    EXPECT(morandel_formula_check(formula, &faults, &error) == 1);
    EXPECT(morandel_faults_count(faults) == 1);
    EXPECT(morandel_faults_get(faults, 0, &fault) == 1);
    EXPECT(is_text(fault.name, fault.size, "sqrt"));
    EXPECT(fault.kind == 1 && fault.operand == 1 && fault.wants == MORANDEL_NUMBER);
    EXPECT(fault.position.byte == 2 && fault.position.bytes == 4);
    EXPECT(morandel_faults_get(faults, 0, NULL) == 0);
    EXPECT(morandel_faults_get(faults, 1, &fault) == 0);
    morandel_faults_free(faults);
    morandel_formula_free(formula);

    /* A name that is told to be a number is no text. */
    told.text = "n";
    told.size = 1;
    told.type = MORANDEL_NUMBER;
    EXPECT(morandel_formula_prepare("n equal \"x\"", 11, &told, 1, 0, &formula, NULL) == 1);
    EXPECT(morandel_formula_check(formula, &faults, NULL) == 1);
    EXPECT(morandel_faults_count(faults) == 1);
    EXPECT(morandel_faults_get(faults, 0, &fault) == 1 && fault.operand == 1);
    morandel_faults_free(faults);
    morandel_formula_free(formula);
}

static void test_columns(void) {
    static const double numbers[3] = {2.0, 0.0, 4.0};
    static const double tiny = 1e-25;
    static const int offsets[4] = {0, 1, 1, 7};
    char bytes[8] = "x";
    morandel_column columns[2];
    double results[3];
    unsigned char status[3];
    morandel_error* error = NULL;
    morandel_texts* texts = NULL;
    size_t size = 0;
    morandel_formula* formula = prepared("1/n");

    strcat(bytes, apple);
    memset(columns, 0, sizeof columns);
    columns[0].type = MORANDEL_NUMBER;
    columns[0].numbers = numbers;
    columns[0].stride = sizeof(double);
    EXPECT(morandel_formula_columns(formula, columns, 1, 3, results, status, &error) == 1);
    EXPECT(results[0] == 0.5 && results[1] == 0.0 && results[2] == 0.25);
    EXPECT(status[0] == MORANDEL_ROW_OK && status[1] == MORANDEL_ROW_FAILED && status[2] == 0);
    EXPECT(morandel_formula_row_error(formula, columns, 1, 3, 0, MORANDEL_NUMBER, &error) == 0);
    EXPECT(error == NULL);
    EXPECT(morandel_formula_row_error(formula, columns, 1, 3, 1, MORANDEL_NUMBER, &error) == 1);
    EXPECT(morandel_error_number(error) == 3);
    morandel_error_free(error);
    EXPECT(morandel_formula_row_error(formula, columns, 1, 3, 3, MORANDEL_NUMBER, &error) == 1);
    EXPECT(morandel_error_reason(error) == MORANDEL_REASON_MISUSE);
    morandel_error_free(error);
    EXPECT(morandel_formula_columns(formula, columns, 1, 3, results, NULL, NULL) == 1);
    columns[0].stride = 0;
    EXPECT(morandel_formula_columns(formula, columns, 1, 3, results, NULL, NULL) == 1);
    EXPECT(results[2] == 0.5);
    EXPECT(morandel_formula_columns(formula, columns, 2, 3, results, NULL, &error) == 0);
    morandel_error_free(error);
    morandel_formula_free(formula);

    /* One number for all rows is seen with 20 decimals too. */
    formula = prepared("n*10^30");
    columns[0].numbers = &tiny;
    EXPECT(morandel_formula_columns(formula, columns, 1, 3, results, NULL, NULL) == 1);
    EXPECT(results[0] == 0.0 && results[1] == 0.0 && results[2] == 0.0);
    columns[0].numbers = numbers;
    morandel_formula_free(formula);

    formula = prepared("strcat(s, r2s(n))");
    columns[0].stride = sizeof(double);
    columns[1] = columns[0];
    memset(columns, 0, sizeof columns[0]);
    columns[0].type = MORANDEL_TEXT;
    columns[0].text = bytes;
    columns[0].size = 7;
    columns[0].offsets = offsets;
    columns[0].offset_size = sizeof offsets[0];
    EXPECT(morandel_formula_text_columns(formula, columns, 2, 3, &texts, status, &error) == 1);
    EXPECT_TEXT(morandel_texts_bytes(texts, &size),
                "x20\xE8\x8B\xB9\xE6\x9E\x9C"
                "4");
    EXPECT(morandel_texts_offsets(texts)[1] == 2 && morandel_texts_offsets(texts)[3] == 10);
    morandel_texts_free(texts);
    EXPECT(morandel_formula_row_error(formula, columns, 2, 3, 0, MORANDEL_TEXT, &error) == 0);
    columns[0].size = 6;
    EXPECT(morandel_formula_text_columns(formula, columns, 2, 3, &texts, NULL, NULL) == 0);
    columns[0].size = 7;
    columns[0].offset_size = 3;
    EXPECT(morandel_formula_text_columns(formula, columns, 2, 3, &texts, NULL, &error) == 0);
    EXPECT(texts == NULL);
    EXPECT_TEXT(morandel_error_english(error, &size), "wrong call: offset_size");
    morandel_error_free(error);

    /* Texts without a byte need none; others do. */
    columns[0].text = NULL;
    columns[0].size = 0;
    columns[0].offsets = NULL;
    EXPECT(morandel_formula_text_columns(formula, columns, 2, 3, &texts, NULL, NULL) == 1);
    EXPECT_TEXT(morandel_texts_bytes(texts, &size), "204");
    morandel_texts_free(texts);
    columns[0].size = 1;
    EXPECT(morandel_formula_text_columns(formula, columns, 2, 3, &texts, NULL, NULL) == 0);
    columns[0].offsets = offsets;
    columns[0].offset_size = sizeof offsets[0];
    EXPECT(morandel_formula_text_columns(formula, columns, 2, 1, &texts, NULL, NULL) == 0);
    morandel_formula_free(formula);
}

/* Nothing where something must be. */
static void test_misuse(void) {
    static const morandel_name many[51] = {{"a", 1, MORANDEL_NUMBER}};
    morandel_formula* none = NULL;
    morandel_formula* formula = NULL;
    morandel_result* result = morandel_result_create();
    morandel_error* error = NULL;
    morandel_value value = morandel_number(1.0);
    morandel_column column;
    morandel_texts* texts = NULL;
    morandel_position position;
    morandel_name found;
    double number = 0.0;

    EXPECT(morandel_formula_prepare(NULL, 3, NULL, 0, 0, &formula, &error) == 0);
    EXPECT(morandel_error_reason(error) == MORANDEL_REASON_MISUSE);
    EXPECT(morandel_error_position(error, &position) == 0);
    morandel_error_free(error);
    EXPECT(formula == NULL);
    EXPECT(morandel_formula_prepare(NULL, 0, NULL, 0, 0, &formula, &error) == 0);
    EXPECT(morandel_error_reason(error) == MORANDEL_REASON_EMPTY);
    morandel_error_free(error);
    EXPECT(morandel_formula_prepare("1+", 2, NULL, 0, 0, &formula, &error) == 0);
    EXPECT(morandel_error_position(error, NULL) == 0);
    EXPECT(morandel_error_position(error, &position) == 1 && position.byte == 2);
    EXPECT(morandel_error_position(NULL, &position) == 0);
    morandel_error_free(error);
    EXPECT(morandel_formula_prepare("1", 1, NULL, 0, 64, &formula, NULL) == 0);
    EXPECT(morandel_formula_prepare("1", 1, NULL, 0, 0, NULL, NULL) == 0);
    EXPECT(morandel_formula_prepare("1", 1, NULL, 1, 0, &formula, NULL) == 0);
    found = name("a", 7);
    EXPECT(morandel_formula_prepare("a", 1, &found, 1, 0, &formula, NULL) == 0);

    formula = prepared("a");
    EXPECT(morandel_formula_compute(NULL, &value, 1, result, NULL) == 0);
    EXPECT(morandel_formula_compute(formula, NULL, 1, result, NULL) == 0);
    EXPECT(morandel_formula_compute(formula, &value, 1, NULL, NULL) == 0);
    EXPECT(morandel_formula_compute(formula, &value, 1, result, NULL) == 1);
    EXPECT(morandel_formula_compute(formula, &value, 0, result, NULL) == 0);
    EXPECT(morandel_result_number(result) == 0.0);
    value.type = 9;
    EXPECT(morandel_formula_compute(formula, &value, 1, result, NULL) == 0);
    value = morandel_text(NULL, 1);
    EXPECT(morandel_formula_compute(formula, &value, 1, result, NULL) == 0);
    value.type = -2;
    EXPECT(morandel_formula_compute(formula, &value, 1, result, NULL) == 0);
    EXPECT(morandel_formula_prepare("1", 1, many, 51, 0, &none, &error) == 0);
    EXPECT(morandel_error_reason(error) == MORANDEL_REASON_TOO_MANY_NAMES);
    morandel_error_free(error);
    EXPECT(morandel_formula_name(formula, 0, NULL) == 0);
    number = 7.0;
    EXPECT(morandel_formula_compute_numbers(NULL, &number, 1, &number) == 0 && number == 0.0);
    EXPECT(morandel_formula_compute_numbers(formula, NULL, 1, &number) == 0);
    EXPECT(morandel_formula_compute_numbers(formula, &number, 1, NULL) == 0);
    EXPECT(morandel_formula_compute_numbers(formula, &number, 2, &number) == 0);
    EXPECT(morandel_evaluate("1", 1, NULL, NULL, 1, result, NULL) == 0);
    EXPECT(morandel_evaluate("1", 1, NULL, NULL, 0, NULL, NULL) == 0);
    memset(&column, 0, sizeof column);
    column.type = MORANDEL_NUMBER;
    EXPECT(morandel_formula_columns(formula, NULL, 1, 1, &number, NULL, NULL) == 0);
    EXPECT(morandel_formula_columns(formula, &column, 1, 1, &number, NULL, NULL) == 0);
    EXPECT(morandel_formula_columns(NULL, &column, 1, 1, &number, NULL, NULL) == 0);
    EXPECT(morandel_formula_columns(formula, &column, 1, 0, NULL, NULL, NULL) == 1);
    EXPECT(morandel_formula_text_columns(formula, &column, 1, 0, &texts, NULL, NULL) == 1);
    EXPECT(morandel_texts_offsets(texts)[0] == 0);
    morandel_texts_free(texts);
    column.numbers = &number;
    EXPECT(morandel_formula_columns(formula, &column, 1, 1, NULL, NULL, NULL) == 0);
    EXPECT(morandel_formula_columns(formula, &column, (size_t)-1, 1, &number, NULL, NULL) == 0);
    EXPECT(morandel_formula_text_columns(formula, &column, 1, 1, NULL, NULL, NULL) == 0);
    column.type = MORANDEL_TEXT;
    column.size = 1;
    EXPECT(morandel_formula_columns(formula, &column, 1, 1, &number, NULL, NULL) == 0);
    EXPECT(morandel_formula_warnings(formula, NULL, NULL) == 0);
    EXPECT(morandel_formula_check(NULL, NULL, NULL) == 0);
    morandel_formula_free(formula);
    formula = prepared("2+3");
    EXPECT(morandel_formula_compute_numbers(formula, NULL, 0, &number) == 1 && number == 5.0);
    morandel_formula_free(formula);
    formula = prepared("a+1");
    EXPECT(morandel_formula_compute_numbers(formula, NULL, 1, &number) == 0);
    EXPECT(morandel_formula_compute_numbers(formula, &number, 1, NULL) == 0);
    EXPECT(morandel_formula_compute_numbers(formula, &number, 0, &number) == 0);
    EXPECT(morandel_formula_compute_numbers(formula, &number, 2, &number) == 0);
    morandel_formula_free(formula);
    morandel_result_free(result);
}

/* Where nobody asks why, what fails gives nothing too. */
static void test_failures(void) {
    morandel_result* result = morandel_result_create();
    morandel_formula* formula = prepared("1/a");
    morandel_value value = morandel_number(0.0);
    size_t size = 0;

    EXPECT(morandel_formula_compute(formula, &value, 1, result, NULL) == 0);
    EXPECT(morandel_result_number(result) == 0.0);
    value = morandel_number(4.0);
    EXPECT(value.type == MORANDEL_NUMBER && value.text == NULL && value.size == 0);
    EXPECT(morandel_formula_compute(formula, &value, 1, result, NULL) == 1);
    EXPECT(morandel_result_number(result) == 0.25);
    morandel_formula_free(formula);

    formula = prepared("strsub(s, 1, 1)");
    value = morandel_text("\xFF", 1);
    EXPECT(morandel_formula_compute(formula, &value, 1, result, NULL) == 0);
    value = morandel_text(apple, MORANDEL_TERMINATED);
    EXPECT(morandel_formula_compute(formula, &value, 1, result, NULL) == 0);
    EXPECT_TEXT(morandel_result_text(result, &size), "");
    value = morandel_text("ab", 2);
    EXPECT(morandel_formula_compute(formula, &value, 1, result, NULL) == 1);
    EXPECT_TEXT(morandel_result_text(result, &size), "a");
    morandel_formula_free(formula);
    morandel_result_free(result);
}

static void test_nothing(void) {
    morandel_name found;
    size_t size = 1;

    EXPECT(morandel_formula_retain(NULL) == NULL);
    EXPECT(morandel_formula_name_count(NULL) == 0);
    EXPECT(morandel_formula_name(NULL, 0, &found) == 0);
    EXPECT(morandel_formula_find_name(NULL, "a", 1) == -1);
    EXPECT(morandel_formula_free_name_count(NULL) == 0);
    EXPECT(morandel_formula_free_name(NULL, 0, &found) == 0);
    EXPECT(morandel_warnings_count(NULL) == 0);
    EXPECT(morandel_warnings_get(NULL, 0) == NULL);
    EXPECT(morandel_faults_count(NULL) == 0);
    EXPECT(morandel_faults_get(NULL, 0, NULL) == 0);
    EXPECT(morandel_result_type(NULL) == MORANDEL_INTEGER);
    EXPECT(morandel_result_number(NULL) == 0.0);
    EXPECT_TEXT(morandel_result_text(NULL, &size), "");
    EXPECT_TEXT(morandel_texts_bytes(NULL, &size), "");
    EXPECT(morandel_texts_offsets(NULL) == NULL);
    EXPECT(morandel_error_number(NULL) == -1);
    EXPECT(morandel_error_reason(NULL) == MORANDEL_REASON_NUMBERED);
    EXPECT_TEXT(morandel_error_message(NULL, &size), "");
    EXPECT_TEXT(morandel_error_english(NULL, &size), "");
    EXPECT(morandel_error_position(NULL, NULL) == 0);
    EXPECT(morandel_error_value(NULL) == -1);
    morandel_formula_free(NULL);
    morandel_warnings_free(NULL);
    morandel_faults_free(NULL);
    morandel_result_free(NULL);
    morandel_texts_free(NULL);
    morandel_error_free(NULL);
}

static void test_language(void) {
    morandel_function function;
    size_t i;

    EXPECT(morandel_function_count() == 34);
    for (i = 0; i < morandel_function_count(); ++i) {
        EXPECT(morandel_function_get(i, &function) == 1);
        EXPECT(strlen(function.name) > 1 && strlen(function.summary) > 4);
        EXPECT(strstr(function.example, function.name) == function.example);
        EXPECT(strlen(function.kinds) > 0 && strlen(function.arguments) > 0);
    }
    EXPECT(morandel_function_get(i, &function) == 0);
    EXPECT(morandel_function_get(0, NULL) == 0);
    EXPECT(strcmp(morandel_version(), "10.0.0") == 0);
}

int main(void) {
    test_formulas();
    test_errors();
    test_columns();
    test_misuse();
    test_failures();
    test_nothing();
    test_language();
    return problems == 0 ? 0 : 1;
}
