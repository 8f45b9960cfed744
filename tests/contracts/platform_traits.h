#pragma once

namespace quillet {

// What the platforms may differ in; everything else is the same. The filter of stretched copies is
// each platform's own too, and so is which image of an icon file it takes.
struct PlatformTraits {
  // The depth of every copy, the screen's (one bit may stay one bit); 0 where a copy has its
  // source's, a stretched one 24.
  int depthOfCopies = 0;
  // CopyImage may hand back its source where that is what was asked for.
  bool copyMayBeItsSource = false;
  // What stands between folders in the names that the platform makes.
  char folderSeparator = '/';
  // A file's permissions tell who may read it besides its owner.
  bool filesShowWhoMayRead = true;
  // A save dialog that is told to asks before it lets a new file be made.
  bool savesAskBeforeCreating = true;
  // The depth of every bitmap that an image file is read into; 0 where it is the file's.
  int depthOfLoaded = 0;
  // The JPEG encoder makes smaller files of lower quality.
  bool jpegHeedsQuality = true;
  // The GIF encoder takes pictures of 1, 4 and 24 bits too, not only those of 8.
  bool gifTakesEveryDepth = true;
};

// Those of the platform that the tests are built for.
PlatformTraits TraitsOfPlatform();

}  // namespace quillet
