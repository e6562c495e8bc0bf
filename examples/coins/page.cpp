#include "page.h"

#include <algorithm>

#include "coin_table.h"
#include "html_text.h"
#include "step_code.h"
#include "text_file.h"

namespace Coins {

extern const char* const pageStyle;

namespace {

using Examples::Report;

/// The end of every page's title; isPage() looks for it.
constexpr const char* titleEnd = " – Zorvan.Ipp</title>";

std::string wholeNumber(double value) { return numberText(value, 0); }

std::string sizeAttributes(Zorvan::Size size) {
  return " width=\"" + wholeNumber(size.width) + "\" height=\"" + wholeNumber(size.height) + "\"";
}

/// The style sheet bounds the width of a picture by these values, and so its height and its enlargement.
std::string proportions(Zorvan::Size size) {
  return " style=\"--ratio:" + numberText(static_cast<double>(size.width) / size.height, 6) +
         ";--width:" + wholeNumber(size.width) + "\"";
}

std::string viewBox(Area area) {
  return " viewBox=\"" + wholeNumber(area.column) + " " + wholeNumber(area.row) + " " +
         wholeNumber(area.width) + " " + wholeNumber(area.height) + "\"";
}

std::string imageTag(const Report::Figure& figure) {
  return "<image href=\"" + figure.file + "\"" + sizeAttributes(figure.picture.size()) + "/>";
}

/// The photograph with a box for every coin, which links to the coin's row in the table.
std::string map(const Report& report, const std::vector<Coin>& coins) {
  const Report::Figure& figure = report.figure("picture");
  std::string html = "<svg class=map" + viewBox({0, 0, figure.picture.width(), figure.picture.height()}) +
                     proportions(figure.picture.size()) + ">" + imageTag(figure);
  for (const Coin& coin : coins) {
    const std::string number = wholeNumber(coin.number);
    html += "<a href=\"#row-" + number + "\" id=\"box-" + number + "\"><rect x=\"" +
            wholeNumber(coin.box.column) + "\" y=\"" + wholeNumber(coin.box.row) + "\" width=\"" +
            wholeNumber(coin.box.width) + "\" height=\"" + wholeNumber(coin.box.height) +
            "\" rx=\"3\"/><text x=\"" + wholeNumber(coin.box.column + 4) + "\" y=\"" +
            wholeNumber(coin.box.row + 12) + "\">" + number + "</text></a>";
  }
  return html + "</svg>\n";
}

std::string coinTable(const Report& report, const std::vector<Coin>& coins) {
  std::string html = "<div class=scroll><table><thead><tr><th></th>";
  for (const Column& column : coinColumns) html += std::string("<th>") + column.title + "</th>";
  html += "</tr></thead><tbody>\n";
  for (const Coin& coin : coins) {
    const std::string number = wholeNumber(coin.number);
    html += "<tr id=\"row-" + number + "\"><td><a href=\"#box-" + number + "\"><svg class=coin" +
            viewBox(coin.box) + ">" + imageTag(report.figure("picture")) + "</svg></a></td>";
    for (const Column& column : coinColumns) {
      html += "<td>" + numberText(column.value(coin), column.decimals) + "</td>";
    }
    html += "</tr>\n";
  }
  return html + "</tbody></table></div>\n";
}

std::string fact(const std::string& value, const std::string& text) {
  return "<div><b>" + value + "</b> " + text + "</div>";
}

std::string facts(const Report& report, const std::vector<Coin>& coins, const Settings& settings) {
  double milliseconds = 0;
  for (const Report::Step& step : report.steps()) {
    milliseconds += step.milliseconds;
    if (step.functions.front() == "measure") break;
  }
  std::string html = "<div class=facts>" +
                     fact(wholeNumber(static_cast<double>(coins.size())), escaped(settings.name)) +
                     fact(numberText(milliseconds, 1) + " ms", "from the pixels to the table");
  if (!coins.empty()) {
    const auto [least, most] = std::minmax_element(
        coins.begin(), coins.end(),
        [](const Coin& a, const Coin& b) { return a.measures.diameter < b.measures.diameter; });
    html += fact(numberText(least->measures.diameter, 1) + " – " + numberText(most->measures.diameter, 1),
                 "pixels in diameter");
  }
  return html + "</div>\n";
}

std::string stepArticle(const Report::Step& step, int number) {
  std::string html = "<article><header><h3><span class=count>" + wholeNumber(number) + "</span> " +
                     escaped(step.heading) + "</h3><span class=ms>" + numberText(step.milliseconds, 3) +
                     " ms</span></header><p>" + escaped(step.text) +
                     (step.figures.size() > 1 ? "</p><div class=many>" : "</p><div class=pair>") +
                     "<div class=figures>";
  for (const Report::Figure& figure : step.figures) {
    html += "<figure><img src=\"" + figure.file + "\" alt=\"" + escaped(step.heading) + "\"" +
            sizeAttributes(figure.picture.size()) + proportions(figure.picture.size()) + "><figcaption>" +
            figure.file + "</figcaption></figure>";
  }
  html += "</div><pre><code>";
  for (const std::string& function : step.functions) {
    if (&function != &step.functions.front()) html += "\n";
    html += highlighted(codeOf(function));
  }
  return html + "</code></pre></div></article>\n";
}

}  // namespace

void writePage(const Report& report, const std::vector<Coin>& coins, const std::string& source,
               const Settings& settings) {
  const Zorvan::Size size = report.figure("picture").picture.size();
  const std::string title = escaped(counted(coins.size(), settings));
  std::string html =
      "<!doctype html>\n<html lang=en><head><meta charset=utf-8>"
      "<meta name=viewport content=\"width=device-width, initial-scale=1\">"
      "<title>" +
      title + titleEnd + "\n<style>" + pageStyle + "</style></head><body><main>\n";
  html += "<header class=top><p class=name>Zorvan.Ipp</p><h1>" + title + "</h1><p>" + escaped(source) + ", " +
          wholeNumber(size.width) + " by " + wholeNumber(size.height) +
          " pixels, analysed with the library's operations only.</p></header>\n";
  html += "<section class=hero>" + map(report, coins) + facts(report, coins, settings) + "</section>\n";
  if (coins.empty()) {
    html += "<section><p class=nothing>" + escaped(whyNothing(report, settings)) + "</p></section>\n";
  } else {
    html +=
        "<section><h2>The " + escaped(settings.name) +
        "</h2><p>Lengths are in pixels, brightness is from 0 to 255. The diameter is that of a circle of the "
        "same area. <a href=\"coins.csv\">coins.csv</a> has the same values.</p>" +
        coinTable(report, coins) + "</section>\n";
  }
  int number = 0;
  for (const Report::Step& step : report.steps()) {
    if (number == 0 || step.section != report.steps()[static_cast<std::size_t>(number - 1)].section) {
      html += (number == 0 ? "<section><h2>" : "</section><section><h2>") + escaped(step.section) + "</h2>\n";
    }
    html += stepArticle(step, ++number);
  }
  html +=
      "</section><footer>Each time is one run of the code beside it. It includes the first access to new "
      "memory."
      "</footer></main></body></html>\n";
  Examples::writeText(report.folder() + "/index.html", html);
}

bool isPage(const std::filesystem::path& path) {
  return Examples::readText(path.string()).find(titleEnd) != std::string::npos;
}

}  // namespace Coins
