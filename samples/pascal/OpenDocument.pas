{ run: OpenDocument DOCUMENT FOLDER; compile it with pascal/KwEditor_TLB.pas and the COM units of the run time
  Opens a document in the control without a window, and tells of the events that it hears. FOLDER takes the control's own
  files. The exit code is 42 if the document was opened. }
program OpenDocument;

{$mode objfpc}{$H+}

uses
  Windows, ActiveX, ComObj, EventSink, SysUtils, Variants, KwEditor_TLB;

type
  TListener = class
    Pages: Integer;
    procedure Heard(Sender: TObject; DispID: Integer; const IID: TGUID; LocaleID: Integer; Flags: Word;
      Params: TDispParams; VarResult, ExcepInfo, ArgErr: Pointer);
  end;

{ The numbers are those of the events in docs/reference.md; the last argument comes first. }
procedure TListener.Heard(Sender: TObject; DispID: Integer; const IID: TGUID; LocaleID: Integer; Flags: Word;
  Params: TDispParams; VarResult, ExcepInfo, ArgErr: Pointer);
begin
  case DispID of
    1: WriteLn('ErrorOccured ', Params.rgvarg^[1].piVal^);
    4: Inc(Pages);
    5: WriteLn('PageChanged ', Params.rgvarg^[0].piVal^);
  end;
end;

procedure Run(const Document, Folder: WideString);
var
  Editor: _KwEditorLayers;
  Late: OleVariant;
  Listener: TListener;
  Sink: TEventSink;
begin
  Editor := CoKwEditorLayers.Create;
  { Before anything else, and with a backslash at its end. }
  Editor.AppDir := IncludeTrailingPathDelimiter(Folder);
  Listener := TListener.Create;
  Sink := TEventSink.Create(nil);
  try
    Sink.OnInvoke := @Listener.Heard;
    Sink.Connect(Editor, DIID___KwEditorLayers);
    Editor.OpenFile(Document);
    { The same without the import unit. }
    Late := Editor as IDispatch;
    Late.MaxUndoLevels := 20;
    WriteLn('NewPageCreated came ', Listener.Pages, ' times');
    if Editor.IsEditable and Editor.Enabled then ExitCode := 42;
  finally
    Sink.Free;
    Listener.Free;
  end;
end;

begin
  if ParamCount <> 2 then
    WriteLn('Say: OpenDocument DOCUMENT FOLDER')
  else
    try
      Run(WideString(ParamStr(1)), WideString(ParamStr(2)));
    except
      on E: Exception do
        WriteLn(E.Message, ': run samples\script\check-installation.vbs, which says what is wrong');
    end;
end.
