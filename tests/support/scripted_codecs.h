#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/contracts/platform.h"

namespace quillet {

// A codec library that writes down what it is asked and answers as the test says, otherwise with
// success. It decodes every file that is there to a small picture. What it encodes is text:
// "first" by a save, then "+page" and "+end" by what follows.
class ScriptedCodecs : public CodecLibrary {
 public:
  explicit ScriptedCodecs(const Platform& platform) : m_platform(platform) {}

  // The calls of that name, as in the log, answer so from now on and do nothing else.
  void Answer(const std::string& name, CodecStatus status) { m_answers[name] = status; }
  // The same for the N-th call of that name only, counted since the last TakeCalls.
  void AnswerCall(const std::string& name, int number, CodecStatus status) {
    m_answers[name + std::to_string(number)] = status;
  }

  static constexpr Long kReadWidth = 3;
  static constexpr Long kReadHeight = 2;

  // The calls since the last time, in order, names without "Gdip": "Startup FromHBITMAP(1)
  // Save(1,file,encoder,parameters) Dispose(1) Shutdown". Images are numbered as they were made,
  // identifiers stand as the text that they were converted from, and a list of parameters as
  // "count:identifier*values:type=value".
  std::string TakeCalls();
  // What nobody let go of.
  int LiveImages() const { return static_cast<int>(m_live.size()); }
  int Starts() const { return m_starts; }

  CodecStatus GdiplusStartup(std::uintptr_t& token) override;
  void GdiplusShutdown(std::uintptr_t token) override;
  bool CLSIDFromString(const char* text, CLSID& clsid) override;
  CodecStatus GdipCreateBitmapFromHBITMAP(BitmapHandle bitmap, ImageHandle& image) override;
  CodecStatus GdipCreateBitmapFromFile(const std::string& fileName, ImageHandle& image) override;
  CodecStatus GdipCreateHBITMAPFromBitmap(ImageHandle image, BitmapHandle& bitmap,
                                          std::uint32_t background) override;
  CodecStatus GdipSaveImageToFile(ImageHandle image, const std::string& fileName,
                                  const CLSID& encoder,
                                  const EncoderParameters& parameters) override;
  CodecStatus GdipSaveAddImage(ImageHandle image, ImageHandle newImage,
                               const EncoderParameters& parameters) override;
  CodecStatus GdipSaveAdd(ImageHandle image, const EncoderParameters& parameters) override;
  CodecStatus GdipDisposeImage(ImageHandle image) override;

 private:
  // Writes the call down; what it answers.
  CodecStatus Begin(const std::string& name, const std::vector<std::string>& arguments);
  ImageHandle NewImage();
  std::string TextOf(const CLSID& clsid) const;
  std::string TextOf(const EncoderParameters& parameters) const;

  const Platform m_platform;
  std::map<std::string, CodecStatus> m_answers;
  std::map<std::string, int> m_counts;
  std::string m_calls;
  std::vector<ImageHandle> m_live;
  std::vector<std::string> m_identifiers;  // by CLSID::Data1
  std::string m_openFile;
  std::uintptr_t m_nextImage = 1;
  int m_starts = 0;
};

}  // namespace quillet
