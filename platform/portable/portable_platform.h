#pragma once

#include <memory>
#include <string>

#include "picture/kernels/kernels.h"
#include "platform/contracts/census.h"
#include "platform/contracts/platform.h"

namespace quillet {

class PortableBitmaps;
class PortableCodecs;
class PortableDialogs;
class PortableFiles;
class PortableForms;
class PortableMemory;
class PortableMessages;
class PortablePictures;
class PortableSourceManager;
class PortableSurface;
class PortableSystem;
class SimulatedUser;
class WindowTable;

// The platform layer for any POSIX machine: bitmaps, pictures, surfaces, memory blocks and windows
// in memory, simulated data sources. One thread uses it.
//
// Pictures and surfaces made here may outlive it: they share what they need.
class PortablePlatform {
 public:
  // The user's default source is kept in that folder from process to process; in none for "". The
  // instruction set is for resampling; the processor must have it.
  explicit PortablePlatform(const std::string& stateFolder = "",
                            InstructionSet instructions = BestKernels().set);
  PortablePlatform(const PortablePlatform&) = delete;
  PortablePlatform& operator=(const PortablePlatform&) = delete;
  ~PortablePlatform();

  Platform& Contracts() noexcept { return m_contracts; }
  CensusCounts Census() const;

  // A surface whose picture box measures insideWidth x insideHeight pixels inside the border while
  // no scroll bar shows.
  std::shared_ptr<PortableSurface> CreateSurface(int insideWidth, int insideHeight);

  // For the one who plays the machine and the person in front of it.
  PortableMessages& Queue() noexcept { return *m_messages; }
  PortableSourceManager& Sources() noexcept { return *m_sources; }
  PortableForms& Forms() noexcept { return *m_forms; }
  SimulatedUser& User() noexcept { return *m_user; }

  // Lays the picture in a file on the glass of the sources, in place of the built-in test page.
  // Errors as of PictureServices::LoadPicture.
  void PutPageOnGlass(const std::string& fileName);

 private:
  std::shared_ptr<PortableBitmaps> m_bitmaps;
  std::shared_ptr<PortablePictures> m_pictures;
  std::shared_ptr<WindowTable> m_windows;
  std::unique_ptr<PortableMemory> m_memory;
  std::unique_ptr<PortableMessages> m_messages;
  std::unique_ptr<SimulatedUser> m_user;
  std::unique_ptr<PortableSourceManager> m_sources;
  std::unique_ptr<PortableFiles> m_files;
  std::unique_ptr<PortableCodecs> m_codecs;
  std::unique_ptr<PortableDialogs> m_dialogs;
  std::unique_ptr<PortableForms> m_forms;
  std::unique_ptr<PortableSystem> m_system;
  Platform m_contracts;
};

}  // namespace quillet
