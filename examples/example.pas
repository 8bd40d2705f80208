{ Free Pascal, early bound; the library's kind is the program's: fpc -Twin64 example.pas
  Texts are bytes of code page 936; what is given as a WideString frees itself. }
program Example;

{$mode objfpc}{$H+}

type
  IComExpress = interface(IDispatch)
    ['{195C5069-9E2E-47CB-9B50-34BEABB8EF67}']
    function SetValue(kind: LongInt; name: PAnsiChar; value: Double; formula: PAnsiChar): HResult; stdcall;
    function GetValue(name: PAnsiChar; out value: Double): HResult; stdcall;
    function Clear: HResult; stdcall;
    function GetLastErrorNum(out status: LongInt): HResult; stdcall;
    function GetVariableCount(out count: LongInt): HResult; stdcall;
    function ValidateExpression(formula: PAnsiChar; out ok: LongInt): HResult; stdcall;
    function get_Variable(index: LongInt; out name: WideString): HResult; stdcall;
    function GetErrMsg(out message: WideString): HResult; stdcall;
    function SetStringValue(kind: LongInt; name, value, formula: PAnsiChar): HResult; stdcall;
    function GetResultType(out kind: LongInt): HResult; stdcall;
    function get_Variable_Type(index: LongInt; out kind: LongInt): HResult; stdcall;
    function GetStringValue(name: PAnsiChar; out text: WideString): HResult; stdcall;
    function ExpressionCheck(formula: PAnsiChar; out ok, count: LongInt): HResult; stdcall;
    function GetExpressionError(out later, kind, position, operand: LongInt; out name: WideString): HResult; stdcall;
  end;

const
  InprocServer = 1;
  ComExpressClass: TGuid = '{BD4CF43D-5C7D-4E1C-B3B0-E3796A1BC833}';

function CoInitialize(reserved: Pointer): HResult; stdcall; external 'ole32.dll';
procedure CoUninitialize; stdcall; external 'ole32.dll';
function CoCreateInstance(const clsid: TGuid; outer: IUnknown; context: LongInt; const iid: TGuid;
  out made): HResult; stdcall; external 'ole32.dll';

procedure Calculate;
var
  calculator: IComExpress;
  total: Double;
  status: LongInt;
  message: WideString;
begin
  if CoCreateInstance(ComExpressClass, nil, InprocServer, IComExpress, calculator) <> 0 then
  begin
    WriteLn('the object cannot be created');
    Halt(1);
  end;
  calculator.SetValue(1, 'price', 12.5, '');
  calculator.SetValue(1, 'qty', 3, '');
  calculator.SetValue(0, 'total', 0, 'price*qty');
  calculator.GetValue('total', total);
  calculator.GetLastErrorNum(status);
  if status = 0 then
  begin
    calculator.GetErrMsg(message);
    WriteLn('failed: ', message);
  end
  else
    WriteLn('total = ', total:0:1);
end;

begin
  CoInitialize(nil);
  Calculate;
  CoUninitialize;
end.
