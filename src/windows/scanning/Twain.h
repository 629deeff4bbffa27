#pragma once

#include <windows.h>

// The part of the TWAIN protocol that an application needs for native transfer: the structures, packed to two bytes,
// and the constants.
namespace kw::windows::twain {

#pragma pack(push, 2)

struct Version {
  WORD major;
  WORD minor;
  WORD language;
  WORD country;
  char info[34];
};

// An application or a source.
struct Identity {
  DWORD id;
  Version version;
  WORD protocolMajor;
  WORD protocolMinor;
  DWORD supportedGroups;
  char manufacturer[34];
  char productFamily[34];
  char productName[34];
};

struct UserInterface {
  WORD isShown;
  WORD isModal;
  HANDLE parent;
};

// A message of the queue, and the source's notice about it.
struct Event {
  void* message;
  WORD notice;
};

struct PendingTransfers {
  WORD count;
  DWORD endOfJob;
};

struct Capability {
  WORD capability;
  WORD containerType;
  HANDLE container;
};

struct OneValue {
  WORD itemType;
  DWORD item;
};

struct Status {
  WORD condition;
  WORD data;
};

#pragma pack(pop)

// Data groups.
enum Group : DWORD { Control = 1, Image = 2 };
enum Data : WORD {
  NoData = 0x0000,
  CapabilityData = 0x0001,
  EventData = 0x0002,
  IdentityData = 0x0003,
  ParentData = 0x0004,
  PendingTransfersData = 0x0005,
  StatusData = 0x0008,
  UserInterfaceData = 0x0009,
  NativeTransferData = 0x0104,
};

// Messages to a source, and its notices.
enum Message : WORD {
  NoMessage = 0x0000,
  Get = 0x0001,
  GetDefault = 0x0003,
  GetFirst = 0x0004,
  Set = 0x0006,
  Reset = 0x0007,
  TransferReady = 0x0101,
  CloseSourceRequest = 0x0102,
  CloseSourceOk = 0x0103,
  OpenManager = 0x0301,
  CloseManager = 0x0302,
  OpenSource = 0x0401,
  CloseSource = 0x0402,
  UserSelect = 0x0403,
  DisableSource = 0x0501,
  EnableSource = 0x0502,
  ProcessEvent = 0x0601,
  EndTransfer = 0x0701,
};

enum Result : WORD {
  Success = 0,
  Failure = 1,
  CheckStatus = 2,
  Cancel = 3,
  SourceEvent = 4,
  NotSourceEvent = 5,
  TransferDone = 6,
};

// Capabilities, their containers, types and values.
inline constexpr WORD TransferCount = 0x0001;
inline constexpr WORD TransferMechanism = 0x0103;
inline constexpr WORD OneValueContainer = 5;
inline constexpr WORD Integer16 = 1;
inline constexpr WORD Unsigned16 = 4;
inline constexpr WORD NativeTransfer = 0;
inline constexpr WORD AllImages = 0xFFFF;

inline constexpr WORD ProtocolMajor = 1;
inline constexpr WORD ProtocolMinor = 9;
inline constexpr WORD LanguageEnglishUsa = 13;
inline constexpr WORD CountryUsa = 1;

// The entry point of the manager, DSM_Entry, and of a source (without the destination), DS_Entry.
using ManagerEntry = WORD(FAR PASCAL*)(Identity* origin, Identity* destination, DWORD group, WORD data, WORD message,
                                       void* content);

}  // namespace kw::windows::twain
