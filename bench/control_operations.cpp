// The control as its host and its user meet it.

#include <stdexcept>

#include "bench/hosted_page.h"
#include "bench/operation.h"

namespace quillet::bench {
namespace {

// What a whole image method costs beyond its kernel: the kernel alone is what the buffer takes for
// the same operation on pixels that it holds.
Trial WholeMethod(const Page& page) {
  const auto host = std::make_shared<HostedPage>(page.DotsPerInch());
  return {.run = [host] { host->Call("Flip"); },
          .deducted = [buffer = page.FilledBuffer()] { buffer->Flip(); }};
}

Trial ScrollStep(const Page& page) {
  const auto host = std::make_shared<HostedPage>(page.DotsPerInch());
  host->ClickArrow(true);
  if (host->ScrollValue() == 0) throw std::runtime_error("the view does not scroll");
  // Down and up in turn: the bar never reaches its end.
  return {.run = [host, down = false]() mutable { host->ClickArrow(down = !down); }};
}

constexpr Operation kOperations[] = {
    {"Flip as a method, less its kernel", {.ofMemcpy = 2.5}, WholeMethod},
    {"Scroll step, 800x600 view", {.milliseconds = 0.5}, ScrollStep},
};

}  // namespace

std::span<const Operation> ControlOperations() {
  return kOperations;
}

}  // namespace quillet::bench
