#include "page.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "coin_table.h"
#include "step_code.h"

namespace Coins {

extern const char* const pageStyle;

namespace {

using Examples::Report;

/// How the title of every page ends.
constexpr const char* kTitleEnd = " – Zorvan.Ipp</title>";

std::string escaped(const std::string& text) {
  std::string html;
  for (const char c : text) {
    if (c == '<')
      html += "&lt;";
    else if (c == '>')
      html += "&gt;";
    else if (c == '&')
      html += "&amp;";
    else if (c == '"')
      html += "&quot;";
    else
      html += c;
  }
  return html;
}

std::string n(double value) { return figureText(value, 0); }

std::string sizeAttributes(Zorvan::Size size) {
  return " width=\"" + n(size.width) + "\" height=\"" + n(size.height) + "\"";
}

/// Lets the style sheet bound the height and the enlargement of a picture by bounding its width.
std::string proportions(Zorvan::Size size) {
  return " style=\"--ratio:" + figureText(static_cast<double>(size.width) / size.height, 6) +
         ";--width:" + n(size.width) + "\"";
}

std::string viewBox(Area area) {
  return " viewBox=\"" + n(area.column) + " " + n(area.row) + " " + n(area.width) + " " + n(area.height) +
         "\"";
}

std::string imageTag(const Report::Figure& figure) {
  return "<image href=\"" + figure.file + "\"" + sizeAttributes(figure.picture.size()) + "/>";
}

/// The photograph with a box for every coin that leads to the coin's row in the table, and back.
std::string map(const Report& report, const std::vector<Coin>& coins) {
  const Report::Figure& figure = report.figure("picture");
  std::string html = "<svg class=map" + viewBox({0, 0, figure.picture.width(), figure.picture.height()}) +
                     proportions(figure.picture.size()) + ">" + imageTag(figure);
  for (const Coin& coin : coins) {
    const std::string number = n(coin.number);
    html += "<a href=\"#row-" + number + "\" id=\"box-" + number + "\"><rect x=\"" + n(coin.box.column) +
            "\" y=\"" + n(coin.box.row) + "\" width=\"" + n(coin.box.width) + "\" height=\"" +
            n(coin.box.height) + "\" rx=\"3\"/><text x=\"" + n(coin.box.column + 4) + "\" y=\"" +
            n(coin.box.row + 12) + "\">" + number + "</text></a>";
  }
  return html + "</svg>\n";
}

std::string coinTable(const Report& report, const std::vector<Coin>& coins) {
  std::string html = "<div class=scroll><table><thead><tr><th></th>";
  for (const Column& column : coinColumns) html += std::string("<th>") + column.title + "</th>";
  html += "</tr></thead><tbody>\n";
  for (const Coin& coin : coins) {
    const std::string number = n(coin.number);
    html += "<tr id=\"row-" + number + "\"><td><a href=\"#box-" + number + "\"><svg class=coin" +
            viewBox(coin.box) + ">" + imageTag(report.figure("picture")) + "</svg></a></td>";
    for (const Column& column : coinColumns) {
      html += "<td>" + figureText(column.value(coin), column.decimals) + "</td>";
    }
    html += "</tr>\n";
  }
  return html + "</tbody></table></div>\n";
}

std::string fact(const std::string& figure, const std::string& text) {
  return "<div><b>" + figure + "</b> " + text + "</div>";
}

std::string facts(const Report& report, const std::vector<Coin>& coins, const Settings& settings) {
  double milliseconds = 0;
  for (const Report::Step& step : report.steps()) {
    milliseconds += step.milliseconds;
    if (step.functions.front() == "measure") break;
  }
  std::string html = "<div class=facts>" +
                     fact(n(static_cast<double>(coins.size())), escaped(settings.name)) +
                     fact(figureText(milliseconds, 1) + " ms", "from the pixels to the table");
  if (!coins.empty()) {
    const auto [least, most] = std::minmax_element(
        coins.begin(), coins.end(),
        [](const Coin& a, const Coin& b) { return a.measures.diameter < b.measures.diameter; });
    html += fact(figureText(least->measures.diameter, 1) + " – " + figureText(most->measures.diameter, 1),
                 "pixels in diameter");
  }
  return html + "</div>\n";
}

std::string stepArticle(const Report::Step& step, int number) {
  std::string html = "<article><header><h3><span class=count>" + n(number) + "</span> " +
                     escaped(step.heading) + "</h3><span class=ms>" + figureText(step.milliseconds, 3) +
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
      title + kTitleEnd + "\n<style>" + pageStyle + "</style></head><body><main>\n";
  html += "<header class=top><p class=name>Zorvan.Ipp</p><h1>" + title + "</h1><p>" + escaped(source) + ", " +
          n(size.width) + " by " + n(size.height) +
          " pixels, taken apart with the library's operations alone.</p></header>\n";
  html += "<section class=hero>" + map(report, coins) + facts(report, coins, settings) + "</section>\n";
  if (coins.empty()) {
    html += "<section><p class=nothing>" + escaped(whyNothing(report, settings)) + "</p></section>\n";
  } else {
    html +=
        "<section><h2>The " + escaped(settings.name) +
        "</h2><p>Lengths in pixels, brightness from 0 to 255. The diameter is that of a circle of the same "
        "area. <a href=\"coins.csv\">coins.csv</a> has the same values.</p>" +
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
      "</section><footer>Each time is that of one run of the code beside it, with the first touch of new "
      "memory."
      "</footer></main></body></html>\n";
  writeText(report.folder() + "/index.html", html);
}

bool isPage(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string html{std::istreambuf_iterator<char>(file), {}};
  return html.find(kTitleEnd) != std::string::npos;
}

}  // namespace Coins
