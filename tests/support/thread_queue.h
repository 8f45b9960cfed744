#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "embed/stage.h"

namespace quillet {

// What other parts of a program do with the messages of the thread, beside the loop under test.
class ThreadQueue {
 public:
  // A window that tells of the messages from kFirstHeard on that are dispatched to it.
  class Listener {
   public:
    virtual ~Listener() = default;
    virtual WindowHandle Window() const = 0;
  };
  using Heard = std::function<void(std::uint32_t message)>;
  static constexpr std::uint32_t kFirstHeard = 0x8000;

  virtual ~ThreadQueue() = default;

  virtual void Post(WindowHandle window, std::uint32_t message) = 0;
  virtual void PostQuit(int exitCode) = 0;
  virtual bool IsWindow(WindowHandle window) const = 0;
  virtual std::unique_ptr<Listener> Listen(Heard heard) = 0;
  // Takes every message that waits; how many those were, a quit message included.
  virtual int Drain() = 0;
};

// That of the thread that the stage was made on.
std::unique_ptr<ThreadQueue> QueueOf(Stage& stage);

// The manager, reached as programs reach one on this platform: where that is a library, through a
// library of a test's own.
std::unique_ptr<SourceManager> AsPrograms(SourceManager& manager);

}  // namespace quillet
