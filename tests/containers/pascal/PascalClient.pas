{ A Free Pascal program that uses the control late bound, by the run time's own COM units:
    PascalClient FOLDER DOCUMENT
  FOLDER is that of the control's files and ends in a backslash; DOCUMENT has five pages. Each failure is a line of the
  output. The exit code is 42 if there is none. }
program PascalClient;

{$mode objfpc}{$H+}

uses
  Windows, ActiveX, Classes, ComObj, EventSink, SysUtils, Variants;

const
  ProgId = 'KwEditor.KwEditorLayers';
  EditorEvents: TGUID = '{a549a3b5-b8de-4fad-926a-76a603117a5c}';
  NewPageCreatedEvent = 4;
  PageChangedEvent = 5;
  Success = 42;

type
  TListener = class
    Sink: TEventSink;
    PagesCreated: Integer;
    Page: Integer;
    constructor Create(const Editor: IDispatch);
    destructor Destroy; override;
    procedure Heard(Sender: TObject; DispID: Integer; const IID: TGUID; LocaleID: Integer; Flags: Word;
      Params: TDispParams; VarResult, ExcepInfo, ArgErr: Pointer);
  end;

var
  Failures: Integer = 0;
  Step: string = 'creation';

procedure Expect(IsRight: Boolean; const What: string);
begin
  if IsRight then Exit;
  WriteLn(What);
  Inc(Failures);
end;

constructor TListener.Create(const Editor: IDispatch);
begin
  Sink := TEventSink.Create(nil);
  Sink.OnInvoke := @Heard;
  Sink.Connect(Editor, EditorEvents);
end;

destructor TListener.Destroy;
begin
  Sink.Free;
  inherited Destroy;
end;

procedure TListener.Heard(Sender: TObject; DispID: Integer; const IID: TGUID; LocaleID: Integer; Flags: Word;
  Params: TDispParams; VarResult, ExcepInfo, ArgErr: Pointer);
begin
  if DispID = NewPageCreatedEvent then Inc(PagesCreated);
  if DispID = PageChangedEvent then Page := Params.rgvarg^[0].piVal^;
end;

procedure OpenAndListen(const Editor: IDispatch; const Document: WideString);
var
  Late: OleVariant;
  Listener: TListener;
begin
  Late := Editor;
  Listener := TListener.Create(Editor);
  try
    Late.OpenFile(Document);
    Expect(Listener.PagesCreated = 5, 'NewPageCreated came ' + IntToStr(Listener.PagesCreated) + ' times');
    Expect(Listener.Page = 1, 'the last page told of is ' + IntToStr(Listener.Page));
  finally
    Listener.Free;
  end;
end;

procedure Persist(const Editor: IDispatch);
var
  Kept, Other: OleVariant;
  Stream: IStream;
  Start: LargeInt;
  Position: QWord;
begin
  Kept := Editor;
  Kept.MaxUndoLevels := 33;
  OleCheck(CreateStreamOnHGlobal(0, True, Stream));
  OleCheck((Editor as IPersistStreamInit).Save(Stream, True));
  Start := 0;
  OleCheck(Stream.Seek(Start, STREAM_SEEK_SET, Position));
  Other := CreateOleObject(ProgId);
  OleCheck((IDispatch(Other) as IPersistStreamInit).Load(Stream));
  Expect(Other.MaxUndoLevels = 33, 'MaxUndoLevels was not kept');
  Expect(Other.AppDir = Kept.AppDir, 'AppDir was not kept');
end;

procedure Print(const Editor: IDispatch);
const
  Side = 300;
var
  Context: HDC;
  Picture: HBITMAP;
  Bounds: TRECTL;
  X, Y, Changes: Integer;
begin
  Context := CreateCompatibleDC(0);
  Picture := CreateBitmap(Side, Side, 1, 32, nil);
  SelectObject(Context, Picture);
  Bounds.Left := 0;
  Bounds.Top := 0;
  Bounds.Right := Side;
  Bounds.Bottom := Side;
  OleCheck((Editor as IViewObject).Draw(DVASPECT_CONTENT, -1, nil, nil, 0, Context, @Bounds, nil, nil, 0));
  Changes := 0;
  for Y := 0 to Side - 1 do
    for X := 1 to Side - 1 do
      if GetPixel(Context, X, Y) <> GetPixel(Context, X - 1, Y) then Inc(Changes);
  Expect(Changes > 100, 'the picture is empty');
  DeleteDC(Context);
  DeleteObject(Picture);
end;

procedure RefuseWrongValues(const Editor: IDispatch);
var
  Late: OleVariant;
begin
  Late := Editor;
  try
    Late.MaxUndoLevels := 70000;
    Expect(False, 'a number that is too large was taken');
  except
    on E: EOleSysError do
      Expect(LongWord(E.ErrorCode) = LongWord(DISP_E_OVERFLOW), 'the error is ' + HexStr(E.ErrorCode, 8));
  end;
end;

{ The control goes while a listener is connected, before it, or at the end of the program. }
procedure CloseInEachOrder(const Folder: WideString; out Last: IDispatch);
var
  Editor: IDispatch;
  Listener: TListener;
begin
  Editor := CreateOleObject(ProgId);
  OleVariant(Editor).AppDir := Folder;
  Listener := TListener.Create(Editor);
  Editor := nil;
  Listener.Free;

  Editor := CreateOleObject(ProgId);
  Listener := TListener.Create(Editor);
  Listener.Free;
  OleCheck((Editor as IOleObject).Close(OLECLOSE_NOSAVE));
  Editor := nil;

  Last := CreateOleObject(ProgId);
end;

var
  Editor, Last: IDispatch;
begin
  try
    Editor := CreateOleObject(ProgId);
    OleVariant(Editor).AppDir := WideString(ParamStr(1));
    Step := 'opening';
    OpenAndListen(Editor, WideString(ParamStr(2)));
    Step := 'persistence';
    Persist(Editor);
    Step := 'printing';
    Print(Editor);
    Step := 'wrong values';
    RefuseWrongValues(Editor);
    Editor := nil;
    Step := 'closing';
    CloseInEachOrder(WideString(ParamStr(1)), Last);
  except
    on E: EOleSysError do Expect(False, Step + ': error ' + HexStr(E.ErrorCode, 8) + ' ' + E.Message);
    on E: Exception do Expect(False, Step + ': ' + E.ClassName + ' ' + E.Message);
  end;
  if Failures = 0 then ExitCode := Success;
end.
