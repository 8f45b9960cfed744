#include <algorithm>
#include <cctype>

#include "base/rounding.h"
#include "control/TWAIN.h"

namespace quillet {
namespace {

// The format that a chosen name stands for. Names of four letters after the dot are not known.
IMAGE_TYPE FileTypeOf(const std::string& fileName, Integer quality) {
  std::string ending = fileName.substr(fileName.size() - std::min<std::size_t>(4, fileName.size()));
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  if (ending == ".JPG") return twJPEG;
  if (ending == ".GIF") return twGIF;
  if (ending == ".TIF") return twTIFF;
  if (ending == ".PNG") return twPNG;
  return quality > 0 ? twJPEG : twBITMAP;
}

}  // namespace

Long TWAIN::Save() {
  m_GDI->PutBitmapPicture(m_Picture);
  return m_GDI->SaveImage(m_FileName, m_FileType, LowByte(m_Quality), LowByte(m_Compression));
}

// An empty argument means the file that the property names.
Long TWAIN::SaveAdd(std::string& filename) {
  m_GDI->PutBitmapPicture(m_Picture);
  return m_GDI->SaveAddImage(filename.empty() ? m_FileName : filename);
}

void TWAIN::Load() {
  ResetZoom();
  m_Picture = m_GDI->LoadImage(m_FileName);
  ShowPicture(m_Picture);
}

// What the dialogs choose is stored directly: the properties are not marked as changed.

void TWAIN::ShowSave(std::string& sFilter, std::string& sTitle, std::string& sInitDir) {
  const WindowHandle owner = m_surface->UserControl().hWnd();
  const std::string chosen = m_Dialog->ShowSaveDialog(owner, sFilter, sTitle, sInitDir);
  if (chosen.empty()) return;
  m_FileType = FileTypeOf(chosen, m_Quality);
  m_FileName = chosen;
  Save();
}

void TWAIN::ShowSaveAdd(std::string& sTitle, std::string& sInitDir) {
  const WindowHandle owner = m_surface->UserControl().hWnd();
  std::string filter = "TIFF Image (*.tif)|*.tif";
  const std::string chosen = m_Dialog->ShowSaveDialog(owner, filter, sTitle, sInitDir);
  if (chosen.empty()) return;
  m_FileType = twTIFF;
  m_FileName = chosen;
  std::string fileName = m_FileName;
  SaveAdd(fileName);
}

void TWAIN::ShowLoad(std::string& sFilter, std::string& sTitle, std::string& sInitDir) {
  const WindowHandle owner = m_surface->UserControl().hWnd();
  const std::string chosen = m_Dialog->ShowOpenDialog(owner, sFilter, sTitle, sInitDir);
  if (chosen.empty()) return;
  m_FileName = chosen;
  Load();
}

}  // namespace quillet
