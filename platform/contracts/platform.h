#pragma once

#include "platform/contracts/bitmap_services.h"
#include "platform/contracts/codec_library.h"
#include "platform/contracts/dialogs.h"
#include "platform/contracts/files.h"
#include "platform/contracts/global_memory.h"
#include "platform/contracts/messages.h"
#include "platform/contracts/modal_forms.h"
#include "platform/contracts/picture_services.h"
#include "platform/contracts/source_manager.h"
#include "platform/contracts/system_services.h"

namespace quillet {

// What lives as long as the process, handed by reference to everything that needs it.
struct Platform {
  BitmapServices& bitmaps;
  PictureServices& pictures;
  GlobalMemory& memory;
  Messages& messages;
  SourceManager& sources;
  Files& files;
  CodecLibrary& codecs;
  Dialogs& dialogs;
  ModalForms& forms;
  SystemServices& system;
};

}  // namespace quillet
