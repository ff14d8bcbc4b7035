#include "progress.h"

#include <ostream>

namespace vndoc {

Progress::Progress(Context& context, vnDocument& document, std::string title)
    : context_(context), document_(document), title_(std::move(title)) {
  document_.AddListener(this);
}

// The bar makes room for what comes next.
Progress::~Progress() {
  document_.RemoveListener(this);
  if (drawn_) context_.err << "\r\033[K" << std::flush;
}

void Progress::Draw(int percent) {
  if (!context_.progress || !context_.on_terminal) return;
  constexpr int kWidth = 30;
  const int filled = kWidth * percent / 100;
  context_.err << '\r' << title_ << " [" << std::string(static_cast<size_t>(filled), '#')
               << std::string(static_cast<size_t>(kWidth - filled), ' ') << "] " << percent
               << "%\033[K" << std::flush;
  drawn_ = true;
}

}  // namespace vndoc
