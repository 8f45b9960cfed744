// The table of the control's members.

#include <array>

#include "control/accessor.h"
#include "control/dispatch.h"

namespace quillet {
namespace {

constexpr Parameter kTitle[] = {{"Title", true, ""}};
constexpr Parameter kComparePic[] = {{"ComparePic", true}};
constexpr Parameter kIValue[] = {{"iValue"}};
constexpr Parameter kLValue[] = {{"lValue"}};
constexpr Parameter kNewSize[] = {{"lNewWidth"}, {"lNewHeight"}};
constexpr Parameter kRectangle[] = {{"lLeft"}, {"lTop"}, {"lWidth"}, {"lHeight"}};
constexpr Parameter kIType[] = {{"iType", false, "1"}};
constexpr Parameter kIFactory[] = {{"iFactory"}};
constexpr Parameter kFileName[] = {{"filename", true}};
constexpr Parameter kSaveOrLoadDialog[] = {
    {"sFilter", true, ""}, {"sTitle", true, ""}, {"sInitDir", true, ""}};
constexpr Parameter kAddDialog[] = {{"sTitle", true, ""}, {"sInitDir", true, ""}};

constexpr std::array kMembers = {
    MemberRow<&TWAIN::Quality>(0x68030014, "Quality", Access::Get,
                               "Set image quality for JPEG formats."),
    MemberRow<&TWAIN::PutQuality>(0x68030014, "Quality", Access::Put,
                                  "Set image quality for JPEG formats."),
    MemberRow<&TWAIN::Compression>(0x68030013, "Compression", Access::Get),
    MemberRow<&TWAIN::PutCompression>(0x68030013, "Compression", Access::Put),
    MemberRow<&TWAIN::FileType>(0x68030012, "FileType", Access::Get,
                                "Set image type for to save in to file."),
    MemberRow<&TWAIN::PutFileType>(0x68030012, "FileType", Access::Put,
                                   "Set image type for to save in to file."),
    MemberRow<&TWAIN::BorderStyle>(0x68030011, "BorderStyle", Access::Get),
    MemberRow<&TWAIN::PutBorderStyle>(0x68030011, "BorderStyle", Access::Put),
    MemberRow<&TWAIN::BackColor>(0x68030010, "BackColor", Access::Get,
                                 "Sets the background color of the bitmap."),
    MemberRow<&TWAIN::PutBackColor>(0x68030010, "BackColor", Access::Put,
                                    "Sets the background color of the bitmap."),
    MemberRow<&TWAIN::Enabled>(0x6803000F, "Enabled", Access::Get),
    MemberRow<&TWAIN::PutEnabled>(0x6803000F, "Enabled", Access::Put),
    MemberRow<&TWAIN::hDC>(0x6803000E, "hDC", Access::Get),
    MemberRow<&TWAIN::hwnd>(0x6803000D, "hwnd", Access::Get),
    MemberRow<&TWAIN::MouseIcon>(0x6803000C, "MouseIcon", Access::Get),
    MemberRow<&TWAIN::PutRefMouseIcon>(0x6803000C, "MouseIcon", Access::PutRef),
    MemberRow<&TWAIN::MousePointer>(0x6803000B, "MousePointer", Access::Get),
    MemberRow<&TWAIN::PutMousePointer>(0x6803000B, "MousePointer", Access::Put),
    MemberRow<&TWAIN::CurrentPicture>(0x6803000A, "Picture", Access::Get),
    MemberRow<&TWAIN::PutRefPicture>(0x6803000A, "Picture", Access::PutRef),
    MemberRow<&TWAIN::BitmapWidth>(0x68030009, "BitmapWidth", Access::Get,
                                   "Gets the width of the bitmap, in pixel."),
    MemberRow<&TWAIN::BitmapHeight>(0x68030008, "BitmapHeight", Access::Get,
                                    "Gets the height of the bitmap, in pixel."),
    MemberRow<&TWAIN::AutoRedraw>(0x68030007, "AutoRedraw", Access::Get,
                                  "Enables automatic repainting of the bitmap."),
    MemberRow<&TWAIN::PutAutoRedraw>(0x68030007, "AutoRedraw", Access::Put,
                                     "Enables automatic repainting of the bitmap."),
    MemberRow<&TWAIN::ToolTipText>(0x68030006, "ToolTipText", Access::Get),
    MemberRow<&TWAIN::PutToolTipText>(0x68030006, "ToolTipText", Access::Put),
    MemberRow<&TWAIN::ColorType>(0x68030005, "ColorType", Access::Get,
                                 "Set color type for acquisition from scanner devices."),
    MemberRow<&TWAIN::PutColorType>(0x68030005, "ColorType", Access::Put,
                                    "Set color type for acquisition from scanner devices."),
    MemberRow<&TWAIN::Resolution>(0x68030004, "Resolution", Access::Get,
                                  "Set resolution value for acquisition from scanner devices."),
    MemberRow<&TWAIN::PutResolution>(0x68030004, "Resolution", Access::Put,
                                     "Set resolution value for acquisition from scanner devices."),
    MemberRow<&TWAIN::filename>(0x68030003, "filename", Access::Get,
                                "Name of file for to save or load operations."),
    MemberRow<&TWAIN::Putfilename>(0x68030003, "filename", Access::Put,
                                   "Name of file for to save or load operations."),
    MemberRow<&TWAIN::ShowProgress>(0x68030002, "ShowProgress", Access::Get,
                                    "Enables show standard progress dialog when during acquisition "
                                    "form scanner devices."),
    MemberRow<&TWAIN::PutShowProgress>(0x68030002, "ShowProgress", Access::Put,
                                       "Enables show standard progress dialog when during "
                                       "acquisition form scanner devices."),
    MemberRow<&TWAIN::ShowInterface>(
        0x68030001, "ShowInterface", Access::Get,
        "Enables show standard dialog for acquisition form scanner devices."),
    MemberRow<&TWAIN::PutShowInterface>(
        0x68030001, "ShowInterface", Access::Put,
        "Enables show standard dialog for acquisition form scanner devices."),
    MemberRow<&TWAIN::Scrollable>(0x68030000, "Scrollable", Access::Get,
                                  "Enables automatic implementation of scroll bars."),
    MemberRow<&TWAIN::PutScrollable>(0x68030000, "Scrollable", Access::Put,
                                     "Enables automatic implementation of scroll bars."),

    MemberRow<&TWAIN::About>(0x60030015, "About", Access::Method),
    MemberRow<&TWAIN::Compare>(0x60030016, "Compare", Access::Method,
                               "Compare current bitmap with another bitmap.", kComparePic),
    MemberRow<&TWAIN::Refresh>(0x60030017, "Refresh", Access::Method,
                               "Ridisegna completamente un oggetto."),
    MemberRow<&TWAIN::Scan>(0x60030018, "Scan", Access::Method,
                            "Load one images from a image scanner devices.", kTitle),
    MemberRow<&TWAIN::SelectSource>(0x60030019, "SelectSource", Access::Method,
                                    "Select a devices of image scanner.", kTitle),
    MemberRow<&TWAIN::Flip>(0x6003001A, "Flip", Access::Method,
                            "Flips the bitmap from top to bottom."),
    MemberRow<&TWAIN::Reverse>(0x6003001B, "Reverse", Access::Method,
                               "Reverses the bitmap (left to right) to produce a mirror image."),
    MemberRow<&TWAIN::Invert>(
        0x6003001C, "Invert",
        Access::Method,
        "Inverts the colors in the bitmap, making it like a photographic negative."),
    MemberRow<&TWAIN::Rotate>(0x6003001D, "Rotate", Access::Method,
                              "Rotates the bitmap to +90\u00B0."),
    MemberRow<&TWAIN::GrayScale>(0x6003001E, "GrayScale", Access::Method,
                                 "Converts a bitmap to an 8-bit grayscale bitmap."),
    MemberRow<&TWAIN::BlackWhite>(0x6003001F, "BlackWhite", Access::Method,
                                  "Converts a bitmap to an 1-bit black and white bitmap."),
    MemberRow<&TWAIN::Sharpen>(0x60030020, "Sharpen", Access::Method,
                               "Increases the sharpness of the image in the bitmap."),
    MemberRow<&TWAIN::SharpenMore>(0x60030021, "SharpenMore", Access::Method,
                                   "Increases the sharpness of the image in the bitmap."),
    MemberRow<&TWAIN::Blur>(0x60030022, "Blur", Access::Method, "Blur the image."),
    MemberRow<&TWAIN::Contrast>(0x60030023, "Contrast", Access::Method,
                                "Increases or decreases the contrast of the bitmap.", kIValue),
    MemberRow<&TWAIN::Fade>(0x60030024, "Fade", Access::Method,
                            "Increases or decreases the transparency of the bitmap.", kLValue),
    MemberRow<&TWAIN::Lighten>(0x60030025, "Lighten", Access::Method,
                               "Increases or decreases the light of the bitmap.", kLValue),
    MemberRow<&TWAIN::Resize>(0x60030026, "Resize", Access::Method, "Resize the bitmap.", kNewSize),
    MemberRow<&TWAIN::Crop>(0x60030027, "Crop", Access::Method,
                            "Select a area and to crop the display to show only that area.",
                            kRectangle),
    MemberRow<&TWAIN::Fit>(0x60030028, "Fit", Access::Method,
                           "Resize the bitmap to the current view size.", kIType),
    MemberRow<&TWAIN::Zoom>(0x60030029, "Zoom", Access::Method,
                            "Increases or decreases the zoom of the bitmap.", kIFactory),
    MemberRow<&TWAIN::Save>(0x6003002A, "Save", Access::Method,
                            "Save the current images in to a file."),
    MemberRow<&TWAIN::SaveAdd>(0x6003002B, "SaveAdd", Access::Method,
                               "Additing current image to existing image file (TIFF format)",
                               kFileName),
    MemberRow<&TWAIN::Load>(0x6003002C, "Load", Access::Method, "Load one images from a file."),
    MemberRow<&TWAIN::ShowSave>(0x6003002D, "ShowSave", Access::Method,
                                "Save current bitmap in to file with standard dialog interface.",
                                kSaveOrLoadDialog),
    MemberRow<&TWAIN::ShowSaveAdd>(0x6003002E, "ShowSaveAdd", Access::Method, nullptr, kAddDialog),
    MemberRow<&TWAIN::ShowLoad>(0x6003002F, "ShowLoad", Access::Method,
                                "Select a file to load with standard dialog interface.",
                                kSaveOrLoadDialog),
};
static_assert(kMembers.size() == 65);

}  // namespace

std::span<const Member> Members() {
  return kMembers;
}

}  // namespace quillet
