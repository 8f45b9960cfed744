#pragma once

#include <map>
#include <string>

#include "platform/contracts/platform.h"

namespace quillet {

// A platform whose calls can be made to fail at their N-th use. Releases (DeleteDC, DeleteObject,
// GlobalUnlock, GlobalFree) never fail, and neither does putting a context's earlier bitmap back:
// no code can do anything about that. A window is gone even where DestroyWindow is told to fail.
// Data sources have scripts of their own: they pass.
class FaultyPlatform {
 public:
  explicit FaultyPlatform(Platform& platform);

  Platform& Contracts() noexcept { return m_contracts; }

  // The N-th call from now on fails, counted over all calls that can fail: 1 is the next. 0: none.
  void FailCall(int number);
  // The N-th call of the service with that name.
  void FailCall(const std::string& service, int number);

  // Calls that could fail since FailCall (or since the start): of all services, of one.
  int Calls() const { return m_calls; }
  int Calls(const std::string& service) const;
  // Whether the failure asked for has come.
  bool HasFailed() const { return m_hasFailed; }

 private:
  class Bitmaps : public BitmapServices {
   public:
    explicit Bitmaps(FaultyPlatform& owner) : m_owner(owner) {}
    bool GetObjectA(BitmapHandle bitmap, BITMAP& record) const override;
    BitmapHandle CopyImage(BitmapHandle bitmap, Long width, Long height) override;
    DCHandle CreateCompatibleDC() override;
    BitmapHandle SelectObject(DCHandle dc, BitmapHandle bitmap) override;
    BitmapHandle CreateDIBSection(DCHandle dc, const BITMAPINFOHEADER& header,
                                  void*& bits) override;
    int SetDIBitsToDevice(DCHandle dc, Long width, Long height, const void* bits,
                          const BITMAPINFOHEADER& header) override;
    int GetDIBits(DCHandle dc, BitmapHandle bitmap, Long rows, void* bits,
                  const BITMAPINFOHEADER& header) override;
    bool BitBlt(DCHandle destination, Long width, Long height, DCHandle source, Long x,
                Long y) override;
    bool DeleteDC(DCHandle dc) override;
    bool DeleteObject(BitmapHandle bitmap) override;

   private:
    FaultyPlatform& m_owner;
    std::map<DCHandle, BitmapHandle> m_first;  // what each context was born with
  };

  class Pictures : public PictureServices {
   public:
    explicit Pictures(FaultyPlatform& owner) : m_owner(owner) {}
    PictureRef EmptyPicture() override;
    PictureRef OleCreatePictureIndirect(BitmapHandle bitmap) override;
    PictureRef LoadPicture(const std::string& fileName) override;
    void SavePicture(const PictureRef& picture, const std::string& fileName) override;

   private:
    FaultyPlatform& m_owner;
  };

  class Memory : public GlobalMemory {
   public:
    explicit Memory(FaultyPlatform& owner) : m_owner(owner) {}
    GlobalHandle GlobalAlloc(std::size_t bytes) override;
    void* GlobalLock(GlobalHandle block) override;
    void GlobalUnlock(GlobalHandle block) override;
    std::size_t GlobalSize(GlobalHandle block) const override;
    bool GlobalFree(GlobalHandle block) override;

   private:
    FaultyPlatform& m_owner;
  };

  class Queue : public Messages {
   public:
    explicit Queue(FaultyPlatform& owner) : m_owner(owner) {}
    WindowHandle CreateWindowExA(const char* className, const char* caption, Long x, Long y,
                                 Long width, Long height) override;
    bool DestroyWindow(WindowHandle window) override;
    int GetMessageA(MSG& message) override;
    void TranslateMessage(const MSG& message) override;
    void DispatchMessageA(const MSG& message) override;

   private:
    FaultyPlatform& m_owner;
  };

  class FileSystem : public Files {
   public:
    explicit FileSystem(FaultyPlatform& owner) : m_owner(owner) {}
    std::string GetTempPathA() override;
    std::string GetTempFileNameA(const std::string& folder, const std::string& prefix) override;
    void WriteFile(const std::string& fileName,
                   std::span<const std::span<const Byte>> pieces) override;
    void CopyFile(const std::string& source, const std::string& destination) override;
    void DeleteFile(const std::string& fileName) override;

   private:
    FaultyPlatform& m_owner;
  };

  // Counts a call; whether it is the one to fail.
  bool Fails(const char* service);

  Platform& m_platform;
  Bitmaps m_bitmaps{*this};
  Pictures m_pictures{*this};
  Memory m_memory{*this};
  Queue m_messages{*this};
  FileSystem m_files{*this};
  Platform m_contracts{m_bitmaps,          m_pictures,       m_memory,          m_messages,
                       m_platform.sources, m_files,          m_platform.codecs, m_platform.dialogs,
                       m_platform.forms,   m_platform.system};

  std::string m_failingService;  // empty for any
  int m_failingCall = 0;
  int m_calls = 0;
  std::map<std::string, int> m_callsOf;
  bool m_hasFailed = false;
};

}  // namespace quillet
