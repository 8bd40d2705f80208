/* C by the C interface, without COM. On Linux, and for Windows:
   cc prepared.c $(pkg-config --cflags --libs morandel)
   x86_64-w64-mingw32-gcc -I ../include prepared.c ../lib/Morandel10.lib
   There Morandel10.dll lies beside the program. */

#include <morandel/c.h>
#include <stdio.h>

static void tell(morandel_error* error) {
    morandel_position position;
    if (morandel_error_position(error, &position))
        printf("character %u: ", (unsigned)position.character);
    printf("%s\n", morandel_error_english(error, NULL));
    morandel_error_free(error);
}

int main(void) {
    morandel_formula* formula;
    morandel_error* error;
    morandel_column columns[2] = {{0}, {0}};
    double values[2] = {12.5, 3.0};
    double quantities[3] = {1.0, 2.0, 4.0};
    double totals[3];
    double total;

    /* The names are the formula's, in the order of their first appearance: price, qty. */
    if (!morandel_formula_prepare("price*qty", MORANDEL_TERMINATED, NULL, 0, 0, &formula, &error)) {
        tell(error);
        return 1;
    }
    if (morandel_formula_compute_numbers(formula, values, 2, &total)) printf("total = %g\n", total);

    /* One price for all rows, a quantity for each. */
    columns[0].type = MORANDEL_NUMBER;
    columns[0].numbers = values;
    columns[1].type = MORANDEL_NUMBER;
    columns[1].numbers = quantities;
    columns[1].stride = sizeof quantities[0];
    if (morandel_formula_columns(formula, columns, 2, 3, totals, NULL, NULL))
        printf("totals = %g, %g, %g\n", totals[0], totals[1], totals[2]);
    morandel_formula_free(formula);

    if (!morandel_formula_prepare("(price*qty", MORANDEL_TERMINATED, NULL, 0, 0, &formula, &error))
        tell(error);
    return 0;
}
