// The page's style. Its colours follow the reader's light or dark theme; pictures keep their own.
namespace Coins {

extern const char* const pageStyle;
const char* const pageStyle = R"css(
:root {
  color-scheme: light dark;
  --paper: #fbfaf7; --card: #ffffff; --ink: #23241f; --soft: #6d6e66; --line: #e4e1d8;
  --accent: #b4691f; --mark: #fdf1df;
  --key: #8a3ea8; --type: #0b6b75; --call: #2456b8; --number: #a4480f; --note: #7c7d74;
}
@media (prefers-color-scheme: dark) {
  :root {
    --paper: #16171a; --card: #1e2024; --ink: #e7e5df; --soft: #9a9a92; --line: #33353a;
    --accent: #e8a34e; --mark: #3a2f1d;
    --key: #cf9be6; --type: #6fc8cf; --call: #8fb4ff; --number: #e9a06b; --note: #8b8c84;
  }
}
* { box-sizing: border-box; }
html { scroll-behavior: smooth; }
body { margin: 0; background: var(--paper); color: var(--ink);
  font: 16px/1.55 system-ui, -apple-system, "Segoe UI", "Noto Sans", "DejaVu Sans", sans-serif; }
main { max-width: 1180px; margin: 0 auto; padding: 3rem 1.5rem 4rem; }
a { color: var(--accent); }
p { margin: 0 0 1rem; max-width: 46rem; }
.top .name { margin: 0; color: var(--accent); font-weight: 600; letter-spacing: .04em; }
h1 { font-size: clamp(2.4rem, 6vw, 4rem); line-height: 1.05; margin: .2rem 0 .8rem; letter-spacing: -.025em; }
h2 { font-size: 1.6rem; margin: 3.5rem 0 .6rem; letter-spacing: -.015em; }
h3 { font-size: 1.1rem; margin: 0; }
.hero { display: grid; grid-template-columns: minmax(0, 1fr) 14rem; gap: 2rem; align-items: center; }
.map { width: min(100%, calc(44rem * var(--ratio)), calc(4px * var(--width))); height: auto; display: block; margin: 0 auto; border-radius: 10px; }
.map rect { fill: transparent; stroke: #ffb545; stroke-width: 1.2; }
.map text { font: 600 9px system-ui, sans-serif; fill: #fff; stroke: #000; stroke-width: 2.4px; paint-order: stroke; }
.map a:hover rect, .map a:target rect { fill: rgb(255 181 69 / .35); stroke-width: 2; }
.facts { display: grid; gap: 1.4rem; color: var(--soft); }
.facts b { display: block; color: var(--ink); font-size: 1.7rem; line-height: 1.15; letter-spacing: -.02em; white-space: nowrap; }
.nothing { padding: 1rem 1.2rem; border-left: 4px solid var(--accent); background: var(--mark); }
.scroll { overflow-x: auto; border: 1px solid var(--line); border-radius: 10px; background: var(--card); }
table { border-collapse: collapse; width: 100%; font-size: .86rem; font-variant-numeric: tabular-nums; }
th { text-align: right; font-weight: 600; color: var(--soft); white-space: nowrap; }
th, td { padding: .3rem .6rem; border-bottom: 1px solid var(--line); }
td { text-align: right; }
tbody tr:last-child td { border-bottom: 0; }
tbody tr:hover, tr:target { background: var(--mark); }
.coin { width: 38px; height: 38px; display: block; border-radius: 5px; background: #000; }
article { border: 1px solid var(--line); border-radius: 10px; background: var(--card); padding: 1.2rem 1.4rem 1.4rem; margin: 1rem 0; }
article header { display: flex; justify-content: space-between; gap: 1rem; align-items: baseline; }
article p { margin: .3rem 0 1rem; color: var(--soft); }
.count { color: var(--accent); margin-right: .35rem; }
.ms { font-variant-numeric: tabular-nums; color: var(--soft); white-space: nowrap; }
.pair { display: grid; grid-template-columns: minmax(0, 4fr) minmax(0, 6fr); gap: 1.4rem; align-items: start; }
.figures:empty { display: none; }
.figures:empty + pre { grid-column: 1 / -1; }
.figures { display: grid; gap: .8rem; }
.many .figures { grid-template-columns: repeat(auto-fit, minmax(15rem, 1fr)); margin-bottom: 1rem; }
.many figure { max-width: 30rem; }
figure { margin: 0; }
figure img { width: min(100%, calc(36rem * var(--ratio)), calc(4px * var(--width))); height: auto; display: block; border-radius: 6px; box-shadow: 0 0 0 1px var(--line); }
figcaption { font-size: .78rem; color: var(--soft); margin-top: .25rem; }
pre { margin: 0; padding: .9rem 1rem; overflow-x: auto; border-radius: 6px; background: var(--paper); border: 1px solid var(--line);
  font: 12.5px/1.55 ui-monospace, "SF Mono", "Cascadia Mono", "DejaVu Sans Mono", monospace; }
.key { color: var(--key); } .type { color: var(--type); } .call { color: var(--call); }
.number { color: var(--number); } .note { color: var(--note); font-style: italic; }
footer { margin-top: 2.5rem; color: var(--soft); font-size: .9rem; }
@media (max-width: 820px) {
  main { padding: 1.5rem 1rem 3rem; }
  .hero, .pair { grid-template-columns: minmax(0, 1fr); }
  .facts { grid-template-columns: repeat(auto-fit, minmax(10rem, 1fr)); }
}
)css";

}  // namespace Coins
