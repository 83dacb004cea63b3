// Wandelt die Berichte eines Ordners um. Aufruf: Convert DIFFERENZORDNER BERICHTSORDNER
program Convert;

{$APPTYPE CONSOLE}

uses
  SysUtils, Variants, ActiveX, ComObj;

var
  Manager, Entry: OleVariant;
  Done: Boolean;
  Index: Integer;

begin
  if ParamCount <> 2 then
  begin
    WriteLn('Aufruf: Convert DIFFERENZORDNER BERICHTSORDNER');
    Halt(2);
  end;
  CoInitialize(nil);
  Manager := CreateOleObject('Tessary.BXConvertLLMgr');
  Done := Manager.ConvertReports(ParamStr(1), ParamStr(2), '');
  for Index := 1 to Manager.Errors.Count do
  begin
    Entry := Manager.Errors.Item(Index);
    WriteLn(string(Entry.Source), ': ', string(Entry.Text), ' (', IntToHex(Integer(Entry.Number), 8), ')');
  end;
  WriteLn(Integer(Manager.CountCorrectReports), ' Umwandlungen gelungen');
  Entry := Unassigned;
  Manager := Unassigned;
  CoUninitialize;
  if Done then Halt(0);
  WriteLn('Nicht alle Umwandlungen sind gelungen.');
  Halt(1);
end.
