#include "Report.h"

#include <cstdio>
#include <filesystem>
#include <iomanip>
#include <sstream>
#include <stdexcept>

#include "png_file.h"

namespace Examples {

Report::Report(std::string folder, Begins begins) : folder_(std::move(folder)), begins_(std::move(begins)) {
  std::filesystem::create_directories(folder_);
}

void Report::show(const std::string& title, const Zorvan::Ipp::Image::IppIMemory<Zorvan::u8>& picture) {
  char number[16];
  std::snprintf(number, sizeof number, "%02d-", ++figures_);
  Figure& figure = steps_.back().figures.emplace_back();
  figure.title = title;
  figure.file = number + title + ".png";
  figure.picture = picture;
  writePng(folder_ + "/" + figure.file, picture);
}

const Report::Figure& Report::figure(const std::string& title) const {
  for (const Step& step : steps_) {
    for (const Figure& figure : step.figures) {
      if (figure.title == title) return figure;
    }
  }
  throw std::logic_error("No picture of the report is called " + title);
}

std::string Report::table() const {
  std::ostringstream out;
  out << "       ms  step\n" << std::fixed << std::setprecision(3);
  for (const Step& step : steps_) out << std::setw(9) << step.milliseconds << "  " << step.heading << "\n";
  return out.str();
}

}  // namespace Examples
