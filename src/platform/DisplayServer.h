#pragma once

#include <QString>

#include <optional>

namespace pintalux {

/// Why no window can be shown, as a Spanish sentence; none when a display server answers.
///
/// The toolkit ends the process when there is no server, so whoever needs one asks here first.
std::optional<QString> displayProblem();

} // namespace pintalux
