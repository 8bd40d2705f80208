{ Free Pascal by the C interface, without COM: fpc prepared.pas
  With Morandel10.dll of the program's own kind beside the program on Windows, libmorandel installed on
  Linux (or -Fl and the folder that it is in). }
program Prepared;

{$mode objfpc}{$H+}

const
{$ifdef windows}
  Lib = 'Morandel10.dll';
{$else}
  Lib = 'libmorandel.so.10';
{$endif}
  Number = 1;
  Terminated = High(SizeUInt);

type
  THandle = Pointer;
{$packrecords c}
  TPosition = record
    bytePlace, character, bytes, characters: SizeUInt;
  end;
  TColumn = record
    kind: LongInt;
    numbers: PDouble;
    stride: SizeUInt;
    text: PAnsiChar;
    offsets: Pointer;
    offsetSize, size: SizeUInt;
  end;

function morandel_formula_prepare(text: PAnsiChar; size: SizeUInt; names: Pointer; count: SizeUInt;
  flags: LongInt; out formula, error: THandle): LongInt; cdecl; external Lib;
procedure morandel_formula_free(formula: THandle); cdecl; external Lib;
function morandel_formula_compute_numbers(formula: THandle; numbers: PDouble; count: SizeUInt;
  out computed: Double): LongInt; cdecl; external Lib;
function morandel_formula_columns(formula: THandle; columns: Pointer; count, rows: SizeUInt;
  results: PDouble; status: PByte; error: Pointer): LongInt; cdecl; external Lib;
function morandel_error_position(error: THandle; out position: TPosition): LongInt; cdecl; external Lib;
function morandel_error_english(error: THandle; size: Pointer): PAnsiChar; cdecl; external Lib;
procedure morandel_error_free(error: THandle); cdecl; external Lib;

procedure Tell(error: THandle);
var
  position: TPosition;
begin
  if morandel_error_position(error, position) = 1 then
    Write('character ', position.character, ': ');
  WriteLn(morandel_error_english(error, nil));
  morandel_error_free(error);
end;

const
  values: array[0..1] of Double = (12.5, 3);
  quantities: array[0..2] of Double = (1, 2, 4);
var
  formula, error: THandle;
  columns: array[0..1] of TColumn;
  totals: array[0..2] of Double;
  total: Double;
begin
  { The names are the formula's, in the order of their first appearance: price, qty. }
  if morandel_formula_prepare('price*qty', Terminated, nil, 0, 0, formula, error) = 0 then
  begin
    Tell(error);
    Halt(1);
  end;
  if morandel_formula_compute_numbers(formula, @values, 2, total) = 1 then
    WriteLn('total = ', total:0:1);

  { One price for all rows, a quantity for each. }
  FillChar(columns, SizeOf(columns), 0);
  columns[0].kind := Number;
  columns[0].numbers := @values;
  columns[1].kind := Number;
  columns[1].numbers := @quantities;
  columns[1].stride := SizeOf(Double);
  if morandel_formula_columns(formula, @columns, 2, 3, @totals, nil, nil) = 1 then
    WriteLn('totals = ', totals[0]:0:1, ', ', totals[1]:0:0, ', ', totals[2]:0:0);
  morandel_formula_free(formula);

  if morandel_formula_prepare('(price*qty', Terminated, nil, 0, 0, formula, error) = 0 then
    Tell(error);
end.
