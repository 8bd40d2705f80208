/** A value of a name: a number, or a text. Bytes are texts of formulas that are bytes themselves,
 *  where a string is to be ASCII. */
export type Value = number | string | Uint8Array;

/** Values of a name for all rows, or one for all of them. */
export type Column = Float64Array | ArrayLike<number> | readonly (string | Uint8Array)[] | Value;

/** Values by name, or by place; by place alone for a formula of bytes. */
export type Values<T> = Readonly<Record<string, T>> | ReadonlyMap<string, T> | readonly T[];

export type Kind = "integer" | "number" | "text";

/** In a text, from 0. Bytes are those of UTF-8, or of a formula of bytes; characters are as
 *  JavaScript counts them. */
export interface Position {
    readonly byte: number;
    readonly character: number;
    readonly bytes: number;
    readonly characters: number;
}

/** What is told of an error or a warning. */
export interface Notice {
    /** Of the table of errors; -1 for what it has no number for, which the reason then tells. */
    readonly number: number;
    /** One of MORANDEL_REASON_... of morandel/c.h. */
    readonly reason: number;
    readonly english: string;
    readonly chinese: string;
    /** In the formula; where value is one, in that value. */
    readonly position: Position | null;
    /** The place of the value or name that it is about; -1 for the formula itself. */
    readonly value: number;
}

/** A formula that is refused or fails. Its message is English, with where it is. */
export class FormulaError extends Error {
    private constructor();
}
export interface FormulaError extends Notice {}

/** What the checker finds. */
export interface Fault {
    /** 0 no number before "!", 1 no number, 2 no text, 3 too few arguments, 4 too many. */
    readonly kind: number;
    /** From 1; 0 for too many arguments. */
    readonly operand: number;
    readonly wants: Kind | "deduced";
    /** Of the operator or function, as the checker calls it. */
    readonly name: string;
    readonly position: Position;
}

/** A text of a formula of bytes is bytes. */
export interface Name<Text extends string | Uint8Array = string> {
    readonly name: Text;
    readonly kind: Kind;
}

/** Names that values are given for, in the order of the values: alone, or with their kinds. */
export type Names =
    | readonly (string | Uint8Array)[]
    | Readonly<Record<string, Kind | "deduced">>
    | ReadonlyMap<string | Uint8Array, Kind | "deduced">;

/** What becomes of a row. */
export const rowStatus: Readonly<{ ok: 0; failed: 1; otherType: 2; noText: 3 }>;

/** Ready to be computed. It cannot change. What fails throws a FormulaError, a wrong call a
 *  TypeError or a RangeError, and memory that has run out a RangeError. */
export interface Formula<Text extends string | Uint8Array = string> {
    readonly text: Text;
    readonly names: readonly Name<Text>[];
    /** What the formula uses and nobody gives a value to. */
    readonly freeNames: readonly Name<Text>[];
    compute(values?: Values<Value>): number | Text;
    computeWithKind(values?: Values<Value>): { value: number | Text; kind: Kind };
    /** A number for each row, the same bits as row by row; a failed row gives 0. Rows are as many as
     *  the columns have; where each is one value, rows, else 1. */
    columns(values?: Values<Column>, rows?: number): { results: Float64Array; status: Uint8Array };
    /** A text for each row; a failed row gives an empty one. */
    textColumns(values?: Values<Column>, rows?: number): { results: Text[]; status: Uint8Array };
    /** Why a row, from 0, fails; null where it does not. It looks at all columns, so a loop over rows
     *  is better off with the values of one row alone. */
    rowError(values: Values<Column>, row: number, wants?: "number" | "text", rows?: number): FormulaError | null;
    /** What the language accepts and a person rarely means, by position. */
    warnings(): Notice[];
    /** What the checker finds, in its order. */
    check(): Fault[];
    /** Gives its memory back at once; without it, that happens when nobody has it any more. */
    free(): void;
}

/** Without names, all that the formula uses, in the order of their first appearance. A formula of
 *  bytes is of code page 936, and so are its names and texts, in and out. */
export const Formula: {
    new (text: string, names?: Names | null, options?: { allowFreeNames?: boolean }): Formula;
    new (text: Uint8Array, names?: Names | null, options?: { allowFreeNames?: boolean }): Formula<Uint8Array>;
};

/** Prepares a formula, computes it once, and lets go of it. */
export function evaluate(text: string, values?: Readonly<Record<string, Value>> | ReadonlyMap<string, Value>): number | string;
export function evaluate(text: Uint8Array, values?: Readonly<Record<string, Value>> | ReadonlyMap<string | Uint8Array, Value>): number | Uint8Array;
/** What the checker finds of a formula. */
export function check(text: string | Uint8Array, names?: Names): Fault[];
/** Prepares a formula for columns by name and computes a number for each row. */
export function columns(text: string, values: Readonly<Record<string, Column>> | ReadonlyMap<string, Column>, rows?: number): { results: Float64Array; status: Uint8Array };

/** The functions of the language, in the order people look for them. */
export function functions(): { name: string; kinds: string; arguments: string; summary: string; example: string }[];
/** The messages of the table of errors; null where no error has the number, or memory has run out. */
export function message(number: number): string | null;
export function chineseMessage(number: number): string | null;
/** Of the engine. */
export const version: string;
