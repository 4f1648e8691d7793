#include "page/style.h"

namespace page {

// Texts have a contrast of at least 4.5 to 1 on every ground that they stand on. No "<" and no "&":
// they would not be well-formed XML.
const std::string_view kStyle = R"css(
:root {
  --ground: #f4f5f7; --panel: #ffffff; --text: #1b1f24; --dim: #56606c; --line: #d8dde3;
  --link: #1f55b5; --bar: #3b6fd1; --track: #e3e7ed; --bad: #b3261e; --badground: #fdeceb;
  --warn: #7a4f00; --warnground: #fff5dc; --good: #1d6b36; --goodground: #e7f5ea;
}
@media screen and (prefers-color-scheme: dark) {
  :root {
    --ground: #121417; --panel: #1b1f23; --text: #e7eaee; --dim: #a6b0bb; --line: #343b43;
    --link: #8db6fa; --bar: #5f92ec; --track: #333a42; --bad: #ff9389; --badground: #3a1d1b;
    --warn: #f4c56f; --warnground: #332914; --good: #84d89e; --goodground: #17301f;
  }
}
* { box-sizing: border-box; }
html { -webkit-text-size-adjust: 100%; text-size-adjust: 100%; }
body {
  margin: 0 auto; padding: 1.5rem clamp(.75rem, 2.5vw, 2.5rem) 2.5rem; max-width: 104rem;
  background: var(--ground); color: var(--text);
  font: 15px/1.45 system-ui, -apple-system, "Segoe UI", Roboto, "Helvetica Neue", Arial, sans-serif;
  overflow-wrap: anywhere; font-variant-numeric: tabular-nums;
}
a { color: var(--link); }
:focus-visible { outline: 3px solid var(--link); outline-offset: 2px; border-radius: 3px; }
.skip { position: absolute; left: -100vw; padding: .5rem 1rem; background: var(--panel); }
.skip:focus { left: .5rem; top: .5rem; z-index: 1; }
h1 { font-size: clamp(1.5rem, 1.1rem + 1.6vw, 2.2rem); line-height: 1.15; margin: 0; }
h2 { font-size: 1.15rem; line-height: 1.25; margin: 0 0 .75rem; }
h3 { font-size: 1rem; line-height: 1.3; margin: 1rem 0 .4rem; }
p { margin: .35rem 0; }
ul, dl { margin: 0; padding: 0; list-style: none; }
small, .dim { color: var(--dim); font-size: .87em; font-weight: normal; }
i { font-style: normal; font-size: 0; color: var(--dim); }
i::before { content: "\2013"; font-size: 15px; }
header { margin-bottom: 1rem; }
header p { color: var(--dim); }
nav ul { display: flex; flex-wrap: wrap; gap: .25rem 1.1rem; padding-top: .5rem; }
.beside { columns: 2 30rem; column-gap: 1rem; margin-bottom: 1rem; }
.beside section:last-child { margin-bottom: 0; }
.beside section { break-inside: avoid; }
section {
  background: var(--panel); border: 1px solid var(--line); border-radius: 10px;
  padding: 1rem clamp(.75rem, 1.5vw, 1.4rem) 1.1rem; margin: 0 0 1rem;
}
.notice { border-left: 5px solid var(--warn); background: var(--warnground); }
.findings li { padding: .3rem 0; display: flex; gap: .7rem; align-items: baseline; }
.tag {
  flex: none; font-size: .8rem; font-weight: 600; padding: .05rem .5rem; border-radius: 99px;
  border: 1px solid currentColor; white-space: nowrap;
}
.tag.bad { color: var(--bad); background: var(--badground); }
.tag.warn { color: var(--warn); background: var(--warnground); }
.tag.good { color: var(--good); background: var(--goodground); }
.facts { display: grid; gap: .1rem 2.5rem; grid-template-columns: repeat(auto-fill, minmax(min(100%, 24rem), 1fr)); }
.facts div { display: grid; grid-template-columns: 7rem minmax(0, 1fr); gap: .75rem; padding: .32rem 0; border-bottom: 1px solid var(--line); }
dt { color: var(--dim); }
dd { margin: 0; }
.bar { display: block; height: .8rem; border-radius: 99px; background: var(--track); overflow: hidden; margin: .25rem 0; }
.bar span { display: block; height: 100%; background: var(--bar); }
.bar.bad span { background: var(--bad); }
.bar, .bar span, .tag, .screen, .slots li { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
.gauges { display: grid; gap: .2rem 2rem; grid-template-columns: repeat(auto-fill, minmax(min(100%, 20rem), 1fr)); }
.gauges li { padding: .35rem 0; }
.gauges p { display: flex; flex-wrap: wrap; gap: 0 1rem; justify-content: space-between; margin: 0; }
.gauges small { display: block; }
.slots { display: grid; gap: .6rem; grid-template-columns: repeat(auto-fill, minmax(8rem, 1fr)); }
.slots li { border: 2px solid var(--bar); border-radius: 6px; padding: .5rem .7rem; }
.slots li.none { border: 2px dashed var(--dim); color: var(--dim); }
.slots li.broken { border-color: var(--bad); background: var(--badground); }
.slots li.broken b { color: var(--bad); }
.slots b { display: block; font-size: 1.25rem; line-height: 1.3; }
.slots small { display: block; }
.screens { display: flex; flex-wrap: wrap; gap: 1.1rem 1.4rem; align-items: start; }
.screens li { width: min-content; min-width: min(9rem, 100%); max-width: 100%; }
.screen { border: 3px solid var(--bar); border-radius: 5px; background: var(--track); max-width: 100%; margin-bottom: .4rem; }
.screen.none { border-style: dashed; }
.screens bdi, .screens span, .screens small { display: block; }
.screens span { white-space: nowrap; }
table { border-collapse: collapse; width: 100%; font-size: .93rem; }
caption { text-align: left; color: var(--dim); padding-bottom: .3rem; }
th, td { text-align: left; vertical-align: top; padding: .3rem .8rem .3rem 0; border-bottom: 1px solid var(--line); unicode-bidi: plaintext; }
th:last-child, td:last-child { padding-right: 0; }
thead th { color: var(--dim); font-weight: 600; font-size: .87rem; white-space: nowrap; vertical-align: bottom; }
tbody th { font-weight: 600; }
th small, td small { display: block; }
.scroll { overflow-x: auto; }
.scroll td, .scroll th { overflow-wrap: break-word; max-width: 28rem; }
.apps td:last-child { white-space: nowrap; }
.changes { table-layout: fixed; }
.changes thead th:nth-child(1), .changes thead th:nth-child(2) { width: 22%; }
@media screen and (max-width: 60rem) {
  .apps table { min-width: 64rem; }
  .changes { min-width: 30rem; }
}
.number { text-align: right; white-space: nowrap; }
.chart th { font-weight: normal; width: 30%; }
.chart td:last-child { text-align: right; white-space: nowrap; width: 1%; padding-left: .8rem; }
.tiles { display: grid; gap: .75rem; grid-template-columns: repeat(auto-fit, minmax(min(100%, 10.5rem), 1fr)); margin-top: 1rem; }
.tiles div { background: var(--panel); border: 1px solid var(--line); border-radius: 10px; padding: .7rem 1rem; }
.tiles b { display: block; font-size: 1.5rem; line-height: 1.25; white-space: nowrap; }
.machines { columns: 15rem; column-gap: 2rem; }
.machines small { display: inline-block; }
.machines li { break-inside: avoid; padding: .2rem 0; }
.shares .chart th { width: 38%; }
.spread .chart th { width: 55%; }
@media screen and (max-width: 40rem) {
  .spread .chart tr { display: grid; grid-template-columns: minmax(0, 1fr) auto; border-bottom: 1px solid var(--line); }
  .spread .chart th, .spread .chart td { width: auto; border: 0; padding-bottom: 0; }
  .spread .chart th { grid-column: 1 / -1; padding-right: 0; }
}
.found small { white-space: nowrap; }
.found .tag { min-width: 6rem; text-align: center; display: inline-block; }
.found h3 { display: inline-block; width: 27rem; max-width: calc(100% - 8.5rem); margin-left: .5rem; vertical-align: top; }
.found .bar { display: inline-block; width: 9rem; height: .7rem; margin: 0 .2rem; }
details { border-top: 1px solid var(--line); }
details:last-of-type { border-bottom: 1px solid var(--line); }
summary { cursor: pointer; padding: .5rem .2rem; font-weight: 600; }
summary small { margin-left: .5rem; }
summary h3 { display: inline; margin: 0; }
details > div, details > p, details > ul { margin: .2rem 0 1rem; }
footer { margin-top: 1.25rem; color: var(--dim); font-size: .87rem; }
@media print {
  @page { margin: 14mm 12mm; }
  html { font-size: 12px; }
  body { padding: 0; max-width: none; background: none; font-size: 9pt; }
  i::before { font-size: 9pt; }
  .skip, nav { display: none; }
  .beside { columns: auto; margin: 0; }
  .beside section { break-inside: auto; }
  section { border: 0; border-top: 1px solid var(--line); border-radius: 0; padding: 8pt 0; margin: 0; }
  h2, h3, summary, caption, thead { break-after: avoid; }
  tr, .gauges li, .slots li, .screens li, .findings li, .facts div { break-inside: avoid; }
  thead { display: table-header-group; }
  table { font-size: 8pt; }
  td, th { padding-top: 2pt; padding-bottom: 2pt; }
  .scroll { overflow: visible; }
  .scroll th:first-child { overflow-wrap: anywhere; }
  summary { padding: .3rem 0; }
  details:not([open]) summary:not(.found) small::after { content: ", not printed"; }
}
)css";

}  // namespace page
