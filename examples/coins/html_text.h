#pragma once

#include <string>

namespace Coins {

/// The text as HTML: characters with a meaning in HTML are escaped.
inline std::string escaped(const std::string& text) {
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

}  // namespace Coins
