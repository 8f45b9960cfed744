#pragma once

#include <string>

#include "platform/portable/dib.h"

// The format libraries driven directly, as their manuals show it: what any program needs that
// writes these pixels to a file, and reads them back, with the settings that ours have.
namespace quillet::bench::library {

// `pixels` is of 24 bits, for GIF of 8.
void WriteJpeg(const Dib& pixels, const std::string& fileName);
void WritePng(const Dib& pixels, const std::string& fileName);
void WriteTiff(const Dib& pixels, const std::string& fileName);
void WriteGif(const Dib& pixels, const std::string& fileName);

// Into pixels of the file's size and kind.
void ReadJpeg(const std::string& fileName, Dib& pixels);
void ReadPng(const std::string& fileName, Dib& pixels);
void ReadTiff(const std::string& fileName, Dib& pixels);
void ReadGif(const std::string& fileName, Dib& pixels);

}  // namespace quillet::bench::library
