; Lumora's installer for OBS Studio 31 on 64-bit Windows (Inno Setup 6.3 or later).
; Untested: made by .github/workflows/windows.yml, which has never run.
;
;   iscc /DAppVersion=<version> [/DStageDir=<packaged folder>] lumora.iss
;
; The version comes from the workflow, which reads CMake's project version; it
; is written nowhere else. The packaged folder holds obs-plugins\64bit\ and
; data\obs-plugins\lumora\ as OBS reads them; the installer copies both into
; OBS Studio's folder. Saved as UTF-8 with a BOM: without it Inno would read the
; Japanese texts in the system's code page.

#ifndef AppVersion
  #error Pass the version: iscc /DAppVersion=... (the workflow reads it from CMake)
#endif
#ifndef StageDir
  #define StageDir "..\..\package"
#endif

[Setup]
; One identity for every version, so an upgrade replaces the previous install.
AppId={{D4F39BCF-3DD6-4D3D-A5A5-10E2B4002594}
AppName=Lumora
AppVersion={#AppVersion}
AppVerName=Lumora {#AppVersion}
VersionInfoVersion={#AppVersion}
DefaultDirName={code:ObsFolder}
AppendDefaultDirName=no
DirExistsWarning=no
DisableProgramGroupPage=yes
ArchitecturesAllowed=x64compatible
ArchitecturesInstallIn64BitMode=x64compatible
PrivilegesRequired=admin
UninstallFilesDir={app}\data\obs-plugins\lumora\uninstall
UninstallDisplayName=Lumora (OBS Studio plug-in)
OutputBaseFilename=lumora-{#AppVersion}-windows-x64-setup
Compression=lzma2
SolidCompression=yes
WizardStyle=modern

[Languages]
Name: "japanese"; MessagesFile: "compiler:Languages\Japanese.isl"
Name: "english"; MessagesFile: "compiler:Default.isl"

[CustomMessages]
japanese.NotObsFolder=このフォルダーに OBS Studio が見つかりません（bin\64bit\obs64.exe がありません）。%n%nこのフォルダーにインストールしますか？
english.NotObsFolder=This folder does not look like OBS Studio's (there is no bin\64bit\obs64.exe).%n%nInstall into it anyway?

[Files]
Source: "{#StageDir}\obs-plugins\64bit\*"; DestDir: "{app}\obs-plugins\64bit"; Flags: ignoreversion
Source: "{#StageDir}\data\obs-plugins\lumora\*"; DestDir: "{app}\data\obs-plugins\lumora"; Flags: ignoreversion recursesubdirs createallsubdirs

[Code]
{ OBS's own installer records its folder as the default value of
  HKLM\SOFTWARE\OBS Studio (in the 64-bit or the 32-bit registry view). }
function ObsFolder(Param: String): String;
var
  Folder: String;
begin
  Result := ExpandConstant('{commonpf64}\obs-studio');
  if RegQueryStringValue(HKLM64, 'SOFTWARE\OBS Studio', '', Folder) and (Folder <> '') then
    Result := Folder
  else if RegQueryStringValue(HKLM32, 'SOFTWARE\OBS Studio', '', Folder) and (Folder <> '') then
    Result := Folder;
end;

function NextButtonClick(CurPageID: Integer): Boolean;
begin
  Result := True;
  if (CurPageID = wpSelectDir) and
     not FileExists(AddBackslash(WizardDirValue) + 'bin\64bit\obs64.exe') then
    Result := SuppressibleMsgBox(CustomMessage('NotObsFolder'), mbConfirmation, MB_YESNO,
                                 IDYES) = IDYES;
end;
