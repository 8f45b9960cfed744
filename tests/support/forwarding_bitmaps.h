#pragma once

#include "platform/contracts/platform.h"

namespace quillet {

// Bitmap services that hand every call on, to be overridden where a test wants other behaviour.
class ForwardingBitmaps : public BitmapServices {
 public:
  explicit ForwardingBitmaps(BitmapServices& services) : m_services(services) {}

  bool GetObjectA(BitmapHandle bitmap, BITMAP& record) const override {
    return m_services.GetObjectA(bitmap, record);
  }
  BitmapHandle CopyImage(BitmapHandle bitmap, Long width, Long height) override {
    return m_services.CopyImage(bitmap, width, height);
  }
  DCHandle CreateCompatibleDC() override { return m_services.CreateCompatibleDC(); }
  BitmapHandle SelectObject(DCHandle dc, BitmapHandle bitmap) override {
    return m_services.SelectObject(dc, bitmap);
  }
  BitmapHandle CreateDIBSection(DCHandle dc, const BITMAPINFOHEADER& header, void*& bits) override {
    return m_services.CreateDIBSection(dc, header, bits);
  }
  int SetDIBitsToDevice(DCHandle dc, Long width, Long height, const void* bits,
                        const BITMAPINFOHEADER& header) override {
    return m_services.SetDIBitsToDevice(dc, width, height, bits, header);
  }
  int GetDIBits(DCHandle dc, BitmapHandle bitmap, Long rows, void* bits,
                const BITMAPINFOHEADER& header) override {
    return m_services.GetDIBits(dc, bitmap, rows, bits, header);
  }
  bool BitBlt(DCHandle destination, Long width, Long height, DCHandle source, Long x,
              Long y) override {
    return m_services.BitBlt(destination, width, height, source, x, y);
  }
  bool DeleteDC(DCHandle dc) override { return m_services.DeleteDC(dc); }
  bool DeleteObject(BitmapHandle bitmap) override { return m_services.DeleteObject(bitmap); }

 protected:
  BitmapServices& m_services;
};

}  // namespace quillet
