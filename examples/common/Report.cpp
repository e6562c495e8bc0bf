#include "Report.h"

#include <cstdio>
#include <filesystem>
#include <iomanip>
#include <sstream>

#include "Png.h"

namespace Examples {

Report::Report(std::string folder) : folder_(std::move(folder)) {
  std::filesystem::create_directories(folder_);
}

void Report::add(const std::string& title, const Zorvan::Ipp::Image::IppIMemory<Zorvan::u8>& picture,
                 double milliseconds, const std::string& text) {
  char number[16];
  std::snprintf(number, sizeof number, "%02zu-", steps_.size() + 1);
  Step& step = steps_.emplace_back();
  step.title = title;
  step.text = text;
  step.file = number + title + ".png";
  step.milliseconds = milliseconds;
  step.picture = picture;
  writePng(folder_ + "/" + step.file, picture);
}

std::string Report::table() const {
  std::ostringstream out;
  out << std::left << std::setw(18) << "picture" << std::right << std::setw(10) << "size" << std::setw(9)
      << "ms"
      << "  what was done\n";
  for (const Step& step : steps_) {
    const std::string size =
        std::to_string(step.picture.width()) + "x" + std::to_string(step.picture.height());
    out << std::left << std::setw(18) << step.file << std::right << std::setw(10) << size << std::setw(9)
        << std::fixed << std::setprecision(3) << step.milliseconds << "  " << step.text << "\n";
  }
  return out.str();
}

}  // namespace Examples
