#include "tests/support/scripted_codecs.h"

#include <filesystem>
#include <fstream>

#include "tests/support/pictures.h"

namespace quillet {
namespace {

constexpr std::uintptr_t kToken = 4711;

std::string TextOf(ImageHandle image) {
  return std::to_string(static_cast<std::uintptr_t>(image));
}

}  // namespace

std::string ScriptedCodecs::TakeCalls() {
  m_counts.clear();
  if (m_live.empty()) m_nextImage = 1;
  return std::exchange(m_calls, {});
}

CodecStatus ScriptedCodecs::Begin(const std::string& name,
                                  const std::vector<std::string>& arguments) {
  if (!m_calls.empty()) m_calls += ' ';
  m_calls += name;
  const char* separator = "(";
  for (const std::string& argument : arguments) {
    m_calls.append(separator).append(argument);
    separator = ",";
  }
  if (!arguments.empty()) m_calls += ')';
  if (name != "Startup" && m_starts == 0) return CodecStatus::NotInitialized;
  const int number = ++m_counts[name];
  for (const std::string& key : {std::string(name), name + std::to_string(number)})
    if (const auto answer = m_answers.find(key); answer != m_answers.end()) return answer->second;
  return CodecStatus::Ok;
}

ImageHandle ScriptedCodecs::NewImage() {
  const ImageHandle image{m_nextImage++};
  m_live.push_back(image);
  return image;
}

std::string ScriptedCodecs::TextOf(const CLSID& clsid) const {
  return clsid.Data1 < m_identifiers.size() ? m_identifiers[clsid.Data1] : "?";
}

std::string ScriptedCodecs::TextOf(const EncoderParameters& parameters) const {
  std::string text = std::to_string(parameters.Count) + ":";
  for (std::uint32_t i = 0; i < parameters.Count; ++i) {
    const EncoderParameter& parameter = parameters.Parameter[i];
    text += TextOf(parameter.Guid) + "*" + std::to_string(parameter.NumberOfValues) + ":" +
            std::to_string(parameter.Type) + "=" +
            std::to_string(*static_cast<const std::uint32_t*>(parameter.Value));
  }
  return text;
}

CodecStatus ScriptedCodecs::GdiplusStartup(std::uintptr_t& token) {
  const CodecStatus status = Begin("Startup", {});
  if (status != CodecStatus::Ok) return status;
  ++m_starts;
  token = kToken;
  return status;
}

void ScriptedCodecs::GdiplusShutdown(std::uintptr_t token) {
  Begin("Shutdown", {});
  if (token == kToken) --m_starts;
}

bool ScriptedCodecs::CLSIDFromString(const char* text, CLSID& clsid) {
  clsid = {};
  clsid.Data1 = static_cast<std::uint32_t>(m_identifiers.size());
  m_identifiers.emplace_back(text);
  return true;
}

CodecStatus ScriptedCodecs::GdipCreateBitmapFromHBITMAP(BitmapHandle bitmap, ImageHandle& image) {
  const CodecStatus status = Begin("FromHBITMAP", {});
  if (status != CodecStatus::Ok) return status;
  BITMAP record;
  if (!m_platform.bitmaps.GetObjectA(bitmap, record)) return CodecStatus::InvalidParameter;
  image = NewImage();
  return status;
}

CodecStatus ScriptedCodecs::GdipCreateBitmapFromFile(const std::string& fileName,
                                                     ImageHandle& image) {
  const CodecStatus status = Begin("FromFile", {fileName});
  if (status != CodecStatus::Ok) return status;
  if (!std::filesystem::exists(fileName)) return CodecStatus::FileNotFound;
  image = NewImage();
  return status;
}

CodecStatus ScriptedCodecs::GdipCreateHBITMAPFromBitmap(ImageHandle image, BitmapHandle& bitmap,
                                                        std::uint32_t background) {
  const CodecStatus status =
      Begin("ToHBITMAP", {quillet::TextOf(image), std::to_string(background)});
  if (status != CodecStatus::Ok) return status;
  bitmap = MakeBitmap(m_platform, kReadWidth, kReadHeight, Gradient).release();
  return status;
}

CodecStatus ScriptedCodecs::GdipSaveImageToFile(ImageHandle image, const std::string& fileName,
                                                const CLSID& encoder,
                                                const EncoderParameters& parameters) {
  const CodecStatus status =
      Begin("Save", {quillet::TextOf(image), fileName, TextOf(encoder), TextOf(parameters)});
  if (status != CodecStatus::Ok) return status;
  std::ofstream file(fileName, std::ios::binary);
  file << "first";
  if (!file.flush()) return CodecStatus::Win32Error;
  m_openFile = fileName;
  return status;
}

CodecStatus ScriptedCodecs::GdipSaveAddImage(ImageHandle image, ImageHandle newImage,
                                             const EncoderParameters& parameters) {
  const CodecStatus status =
      Begin("AddImage", {quillet::TextOf(image), quillet::TextOf(newImage), TextOf(parameters)});
  if (status == CodecStatus::Ok) std::ofstream(m_openFile, std::ios::app) << "+page";
  return status;
}

CodecStatus ScriptedCodecs::GdipSaveAdd(ImageHandle image, const EncoderParameters& parameters) {
  const CodecStatus status = Begin("Add", {quillet::TextOf(image), TextOf(parameters)});
  if (status == CodecStatus::Ok) std::ofstream(m_openFile, std::ios::app) << "+end";
  return status;
}

CodecStatus ScriptedCodecs::GdipDisposeImage(ImageHandle image) {
  Begin("Dispose", {quillet::TextOf(image)});
  return std::erase(m_live, image) == 1 ? CodecStatus::Ok : CodecStatus::InvalidParameter;
}

}  // namespace quillet
