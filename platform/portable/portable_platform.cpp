#include "platform/portable/portable_platform.h"

#include "base/runtime_error.h"
#include "platform/portable/portable_bitmaps.h"
#include "platform/portable/portable_codecs.h"
#include "platform/portable/portable_dialogs.h"
#include "platform/portable/portable_files.h"
#include "platform/portable/portable_forms.h"
#include "platform/portable/portable_memory.h"
#include "platform/portable/portable_messages.h"
#include "platform/portable/portable_pictures.h"
#include "platform/portable/portable_source_manager.h"
#include "platform/portable/portable_system.h"
#include "platform/portable/window_table.h"

namespace quillet {

PortablePlatform::PortablePlatform(const std::string& stateFolder, InstructionSet instructions)
    : m_bitmaps(std::make_shared<PortableBitmaps>(instructions)),
      m_pictures(std::make_shared<PortablePictures>(m_bitmaps)),
      m_windows(std::make_shared<WindowTable>()),
      m_memory(std::make_unique<PortableMemory>(m_bitmaps->Reserve())),
      m_messages(std::make_unique<PortableMessages>(m_windows)),
      m_user(std::make_unique<SimulatedUser>()),
      m_sources(std::make_unique<PortableSourceManager>(*m_memory, *m_messages, *m_user,
                                                        DefaultSourceFile(stateFolder))),
      m_files(std::make_unique<PortableFiles>()),
      m_codecs(std::make_unique<PortableCodecs>(m_bitmaps)),
      m_dialogs(std::make_unique<PortableDialogs>(*m_messages, *m_user)),
      m_forms(std::make_unique<PortableForms>(*m_messages)),
      m_system(std::make_unique<PortableSystem>()),
      m_contracts{*m_bitmaps, *m_pictures, *m_memory,  *m_messages, *m_sources,
                  *m_files,   *m_codecs,   *m_dialogs, *m_forms,    *m_system} {}

PortablePlatform::~PortablePlatform() = default;

CensusCounts PortablePlatform::Census() const {
  return {.bitmaps = m_bitmaps->BitmapCount(),
          .deviceContexts = m_bitmaps->DeviceContextCount(),
          .pictures = m_pictures->Count(),
          .globalBlocks = m_memory->Count(),
          .windows = m_windows->Count()};
}

void PortablePlatform::PutPageOnGlass(const std::string& fileName) {
  const PictureRef picture = m_pictures->LoadPicture(fileName);
  const Dib* const page = m_bitmaps->FindBitmap(picture->Handle());
  if (!page) throw RunTimeError(ErrorNumber::InvalidPicture, fileName);
  m_sources->Glass().PutPage(*page);
}

}  // namespace quillet
