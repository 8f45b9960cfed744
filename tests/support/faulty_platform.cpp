#include "tests/support/faulty_platform.h"

#include <new>

#include "base/runtime_error.h"

namespace quillet {

FaultyPlatform::FaultyPlatform(Platform& platform) : m_platform(platform) {}

void FaultyPlatform::FailCall(int number) {
  FailCall("", number);
}

void FaultyPlatform::FailCall(const std::string& service, int number) {
  m_failingService = service;
  m_failingCall = number;
  m_calls = 0;
  m_callsOf.clear();
  m_hasFailed = false;
}

int FaultyPlatform::Calls(const std::string& service) const {
  const auto found = m_callsOf.find(service);
  return found == m_callsOf.end() ? 0 : found->second;
}

bool FaultyPlatform::Fails(const char* service) {
  ++m_calls;
  const int calls = ++m_callsOf[service];
  const bool fails = m_failingService.empty()
                         ? m_calls == m_failingCall
                         : m_failingService == service && calls == m_failingCall;
  m_hasFailed = m_hasFailed || fails;
  return fails;
}

bool FaultyPlatform::Bitmaps::GetObjectA(BitmapHandle bitmap, BITMAP& record) const {
  return !m_owner.Fails("GetObjectA") && m_owner.m_platform.bitmaps.GetObjectA(bitmap, record);
}

BitmapHandle FaultyPlatform::Bitmaps::CopyImage(BitmapHandle bitmap, Long width, Long height) {
  if (m_owner.Fails("CopyImage")) return BitmapHandle::None;
  return m_owner.m_platform.bitmaps.CopyImage(bitmap, width, height);
}

DCHandle FaultyPlatform::Bitmaps::CreateCompatibleDC() {
  if (m_owner.Fails("CreateCompatibleDC")) return DCHandle::None;
  return m_owner.m_platform.bitmaps.CreateCompatibleDC();
}

BitmapHandle FaultyPlatform::Bitmaps::SelectObject(DCHandle dc, BitmapHandle bitmap) {
  const auto first = m_first.find(dc);
  const bool putsBack = first != m_first.end() && first->second == bitmap;
  if (!putsBack && m_owner.Fails("SelectObject")) return BitmapHandle::None;
  const BitmapHandle previous = m_owner.m_platform.bitmaps.SelectObject(dc, bitmap);
  if (previous != BitmapHandle::None) m_first.try_emplace(dc, previous);
  return previous;
}

BitmapHandle FaultyPlatform::Bitmaps::CreateDIBSection(DCHandle dc, const BITMAPINFOHEADER& header,
                                                       void*& bits) {
  if (m_owner.Fails("CreateDIBSection")) return BitmapHandle::None;
  return m_owner.m_platform.bitmaps.CreateDIBSection(dc, header, bits);
}

int FaultyPlatform::Bitmaps::SetDIBitsToDevice(DCHandle dc, Long width, Long height,
                                               const void* bits, const BITMAPINFOHEADER& header) {
  if (m_owner.Fails("SetDIBitsToDevice")) return 0;
  return m_owner.m_platform.bitmaps.SetDIBitsToDevice(dc, width, height, bits, header);
}

int FaultyPlatform::Bitmaps::GetDIBits(DCHandle dc, BitmapHandle bitmap, Long rows, void* bits,
                                       const BITMAPINFOHEADER& header) {
  if (m_owner.Fails("GetDIBits")) return 0;
  return m_owner.m_platform.bitmaps.GetDIBits(dc, bitmap, rows, bits, header);
}

bool FaultyPlatform::Bitmaps::BitBlt(DCHandle destination, Long width, Long height, DCHandle source,
                                     Long x, Long y) {
  return !m_owner.Fails("BitBlt") &&
         m_owner.m_platform.bitmaps.BitBlt(destination, width, height, source, x, y);
}

bool FaultyPlatform::Bitmaps::DeleteDC(DCHandle dc) {
  m_first.erase(dc);
  return m_owner.m_platform.bitmaps.DeleteDC(dc);
}

bool FaultyPlatform::Bitmaps::DeleteObject(BitmapHandle bitmap) {
  return m_owner.m_platform.bitmaps.DeleteObject(bitmap);
}

PictureRef FaultyPlatform::Pictures::EmptyPicture() {
  if (m_owner.Fails("EmptyPicture")) throw RunTimeError(ErrorNumber::OutOfMemory);
  return m_owner.m_platform.pictures.EmptyPicture();
}

PictureRef FaultyPlatform::Pictures::OleCreatePictureIndirect(BitmapHandle bitmap) {
  if (m_owner.Fails("OleCreatePictureIndirect")) return nullptr;
  return m_owner.m_platform.pictures.OleCreatePictureIndirect(bitmap);
}

PictureRef FaultyPlatform::Pictures::LoadPicture(const std::string& fileName) {
  if (m_owner.Fails("LoadPicture")) throw RunTimeError(ErrorNumber::OutOfMemory);
  return m_owner.m_platform.pictures.LoadPicture(fileName);
}

void FaultyPlatform::Pictures::SavePicture(const PictureRef& picture, const std::string& fileName) {
  if (m_owner.Fails("SavePicture")) throw RunTimeError(ErrorNumber::OutOfMemory);
  m_owner.m_platform.pictures.SavePicture(picture, fileName);
}

GlobalHandle FaultyPlatform::Memory::GlobalAlloc(std::size_t bytes) {
  if (m_owner.Fails("GlobalAlloc")) return GlobalHandle::None;
  return m_owner.m_platform.memory.GlobalAlloc(bytes);
}

void* FaultyPlatform::Memory::GlobalLock(GlobalHandle block) {
  return m_owner.Fails("GlobalLock") ? nullptr : m_owner.m_platform.memory.GlobalLock(block);
}

void FaultyPlatform::Memory::GlobalUnlock(GlobalHandle block) {
  m_owner.m_platform.memory.GlobalUnlock(block);
}

std::size_t FaultyPlatform::Memory::GlobalSize(GlobalHandle block) const {
  return m_owner.m_platform.memory.GlobalSize(block);
}

bool FaultyPlatform::Memory::GlobalFree(GlobalHandle block) {
  return m_owner.m_platform.memory.GlobalFree(block);
}

WindowHandle FaultyPlatform::Queue::CreateWindowExA(const char* className, const char* caption,
                                                    Long x, Long y, Long width, Long height) {
  if (m_owner.Fails("CreateWindowExA")) return WindowHandle::None;
  return m_owner.m_platform.messages.CreateWindowExA(className, caption, x, y, width, height);
}

bool FaultyPlatform::Queue::DestroyWindow(WindowHandle window) {
  const bool fails = m_owner.Fails("DestroyWindow");
  return m_owner.m_platform.messages.DestroyWindow(window) && !fails;
}

int FaultyPlatform::Queue::GetMessageA(MSG& message) {
  return m_owner.Fails("GetMessageA") ? -1 : m_owner.m_platform.messages.GetMessageA(message);
}

void FaultyPlatform::Queue::TranslateMessage(const MSG& message) {
  m_owner.m_platform.messages.TranslateMessage(message);
}

void FaultyPlatform::Queue::DispatchMessageA(const MSG& message) {
  m_owner.m_platform.messages.DispatchMessageA(message);
}

std::string FaultyPlatform::FileSystem::GetTempPathA() {
  return m_owner.m_platform.files.GetTempPathA();
}

std::string FaultyPlatform::FileSystem::GetTempFileNameA(const std::string& folder,
                                                         const std::string& prefix) {
  if (m_owner.Fails("GetTempFileNameA")) throw RunTimeError(ErrorNumber::PermissionDenied);
  return m_owner.m_platform.files.GetTempFileNameA(folder, prefix);
}

void FaultyPlatform::FileSystem::WriteFile(const std::string& fileName,
                                           std::span<const std::span<const Byte>> pieces) {
  if (m_owner.Fails("WriteFile")) throw RunTimeError(ErrorNumber::DiskFull);
  m_owner.m_platform.files.WriteFile(fileName, pieces);
}

void FaultyPlatform::FileSystem::CopyFile(const std::string& source,
                                          const std::string& destination) {
  if (m_owner.Fails("CopyFile")) throw RunTimeError(ErrorNumber::DiskFull);
  if (m_owner.Fails("memory of CopyFile")) throw std::bad_alloc();
  m_owner.m_platform.files.CopyFile(source, destination);
}

void FaultyPlatform::FileSystem::DeleteFile(const std::string& fileName) {
  if (m_owner.Fails("DeleteFile")) throw RunTimeError(ErrorNumber::PermissionDenied);
  m_owner.m_platform.files.DeleteFile(fileName);
}

}  // namespace quillet
