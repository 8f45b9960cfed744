#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>

#include "picture/kernels/kernels.h"
#include "platform/contracts/bitmap_services.h"
#include "platform/portable/dib.h"
#include "platform/portable/icon_image.h"

namespace quillet {

// Bitmaps, icons and memory device contexts behind checked handles: a handle that names nothing of
// the asked kind is refused. Handles are odd, fit 31 bits and come back only after all others were
// used.
//
// Copies share their pixels until one of them is written. A section whose `bits` its maker holds
// could be written behind our back, so it is copied eagerly, until it belongs to a picture: what a
// picture shows never changes, so from then on no one may write to it, and these services refuse
// to.
class PortableBitmaps : public BitmapServices {
 public:
  // The instruction set for resampling, which the processor must have.
  explicit PortableBitmaps(InstructionSet instructions = BestKernels().set)
      : m_instructions(instructions) {}

  bool GetObjectA(BitmapHandle bitmap, BITMAP& record) const override;
  BitmapHandle CopyImage(BitmapHandle bitmap, Long width, Long height) override;
  DCHandle CreateCompatibleDC() override;
  BitmapHandle SelectObject(DCHandle dc, BitmapHandle bitmap) override;
  BitmapHandle CreateDIBSection(DCHandle dc, const BITMAPINFOHEADER& header, void*& bits) override;
  int SetDIBitsToDevice(DCHandle dc, Long width, Long height, const void* bits,
                        const BITMAPINFOHEADER& header) override;
  int GetDIBits(DCHandle dc, BitmapHandle bitmap, Long rows, void* bits,
                const BITMAPINFOHEADER& header) override;
  bool BitBlt(DCHandle destination, Long width, Long height, DCHandle source, Long x,
              Long y) override;
  bool DeleteDC(DCHandle dc) override;
  bool DeleteObject(BitmapHandle bitmap) override;

  // For the portable layer itself. A new handle; throws std::bad_alloc.
  BitmapHandle AddBitmap(Dib dib);
  BitmapHandle AddIcon(IconImage icon);
  // What the handle names, null when it is stale or of another kind. Valid until the handle is
  // written to or released.
  const Dib* FindBitmap(BitmapHandle bitmap) const;
  const IconImage* FindIcon(BitmapHandle icon) const;
  // A copy that stays as it is now; nothing for no bitmap. Throws std::bad_alloc.
  std::optional<Dib> CopyOf(BitmapHandle bitmap) const;

  // The bitmap passes to a picture: it is not written any more and DeleteObject refuses it. False
  // for what is no bitmap, belongs to a picture already, or is a context's own.
  bool GiveToPicture(BitmapHandle bitmap);
  // The picture lets go of its bitmap or icon. A bitmap that is still selected goes when its
  // context lets go of it.
  void ReleaseByPicture(BitmapHandle handle);

  // Live bitmaps, those that contexts were born with left out.
  int BitmapCount() const;
  int DeviceContextCount() const { return static_cast<int>(m_contexts.size()); }

  // Gives memory kept for the next bitmap back to the system.
  void GiveBackMemory() noexcept { m_reserve->GiveBack(); }
  // Where large blocks go that were let go of, to serve the next bitmap.
  const std::shared_ptr<BlockReserve>& Reserve() const noexcept { return m_reserve; }

 private:
  struct Bitmap {
    Dib dib;
    DCHandle selectedInto = DCHandle::None;
    DCHandle ownedBy = DCHandle::None;  // the context that was born with it
    bool bitsExposed = false;
    bool inPicture = false;
    bool released = false;  // by its picture, while selected
  };
  struct Context {
    BitmapHandle own = BitmapHandle::None;
    BitmapHandle selected = BitmapHandle::None;
  };

  std::uintptr_t NewHandle();
  Bitmap* Find(BitmapHandle bitmap);
  Context* Find(DCHandle dc);
  // The bitmap selected into the context; null for no context.
  Bitmap* Selected(DCHandle dc);
  void Deselect(BitmapHandle bitmap);

  InstructionSet m_instructions;
  std::shared_ptr<BlockReserve> m_reserve = std::make_shared<BlockReserve>();
  std::unordered_map<BitmapHandle, Bitmap> m_bitmaps;
  std::unordered_map<BitmapHandle, IconImage> m_icons;
  std::unordered_map<DCHandle, Context> m_contexts;
  std::uintptr_t m_next = 0x1050001;
};

}  // namespace quillet
