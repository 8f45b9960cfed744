#pragma once

namespace quillet {

// The exit statuses of the command. A failed step outranks a save that did not succeed.
enum ExitStatus : int { kSuccess = 0, kFailed = 1, kWrongUsage = 2, kNotSaved = 3 };

}  // namespace quillet
