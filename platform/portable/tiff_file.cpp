#include "platform/portable/tiff_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace quillet {
namespace {

// What libtiff knows as a file: positions are counted here.
struct SourceFile {
  ByteSource& source;
  std::uint64_t position = 0;
};
struct DescriptorFile {
  int descriptor;
};

toff_t Seek(SourceFile& file, toff_t offset, int whence) {
  const std::uint64_t base = whence == SEEK_SET   ? 0
                             : whence == SEEK_CUR ? file.position
                                                  : file.source.Size();
  file.position = base + offset;
  return file.position;
}

int Silence(TIFF*, void*, const char*, const char*, va_list) {
  return 1;
}

UniqueTiff Open(const char* mode, thandle_t handle, TIFFReadWriteProc read, TIFFReadWriteProc write,
                TIFFSeekProc seek, TIFFCloseProc close, TIFFSizeProc size) {
  constexpr tmsize_t kMostMemory = tmsize_t{1} << 32;
  const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(TIFFOpenOptionsAlloc(),
                                                                             TIFFOpenOptionsFree);
  if (!options) throw std::bad_alloc();
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), kMostMemory);
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), Silence, nullptr);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), Silence, nullptr);
  UniqueTiff tiff(TIFFClientOpenExt("", mode, handle, read, write, seek, close, size, nullptr,
                                    nullptr, options.get()));
  if (!tiff) close(handle);
  return tiff;
}

}  // namespace

UniqueTiff OpenTiff(ByteSource& source) {
  // "m": without mapping the file, which may shrink; "O": offsets of strips as they are asked for.
  return Open(
      "rmO", new SourceFile{source},
      [](thandle_t handle, void* target, tmsize_t size) -> tmsize_t {
        SourceFile& file = *static_cast<SourceFile*>(handle);
        try {
          const std::size_t count = file.source.Read(
              file.position, {static_cast<Byte*>(target), static_cast<std::size_t>(size)});
          file.position += count;
          return static_cast<tmsize_t>(count);
        } catch (const std::exception&) {
          return -1;
        }
      },
      [](thandle_t, void*, tmsize_t) -> tmsize_t { return -1; },
      [](thandle_t handle, toff_t offset, int whence) {
        return Seek(*static_cast<SourceFile*>(handle), offset, whence);
      },
      [](thandle_t handle) {
        delete static_cast<SourceFile*>(handle);
        return 0;
      },
      [](thandle_t handle) -> toff_t { return static_cast<SourceFile*>(handle)->source.Size(); });
}

UniqueTiff OpenTiff(int descriptor, const char* mode) {
  // The library expects the header where the file stands.
  if (lseek(descriptor, 0, SEEK_SET) != 0) return nullptr;
  return Open(
      mode, new DescriptorFile{descriptor},
      [](thandle_t handle, void* target, tmsize_t size) -> tmsize_t {
        for (;;) {
          const ssize_t count = read(static_cast<DescriptorFile*>(handle)->descriptor, target,
                                     static_cast<std::size_t>(size));
          if (count >= 0 || errno != EINTR) return count;
        }
      },
      [](thandle_t handle, void* bytes, tmsize_t size) -> tmsize_t {
        tmsize_t done = 0;
        while (done < size) {
          const ssize_t count =
              write(static_cast<DescriptorFile*>(handle)->descriptor,
                    static_cast<Byte*>(bytes) + done, static_cast<std::size_t>(size - done));
          if (count < 0 && errno == EINTR) continue;
          if (count <= 0) return -1;
          done += count;
        }
        return done;
      },
      [](thandle_t handle, toff_t offset, int whence) {
        return static_cast<toff_t>(lseek(static_cast<DescriptorFile*>(handle)->descriptor,
                                         static_cast<off_t>(offset), whence));
      },
      [](thandle_t handle) {
        delete static_cast<DescriptorFile*>(handle);
        return 0;
      },
      [](thandle_t handle) -> toff_t {
        struct stat status;
        if (fstat(static_cast<DescriptorFile*>(handle)->descriptor, &status) != 0) return 0;
        return static_cast<toff_t>(status.st_size);
      });
}

}  // namespace quillet
