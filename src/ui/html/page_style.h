#pragma once

#include <string_view>

namespace tessary {

// How the page looks: light or dark as the reader's system is set, narrow screens, paper.
inline constexpr std::string_view kPageStyle = R"css(
:root {
  color-scheme: light dark;
  --ground: #f4f6f8; --paper: #ffffff; --ink: #1b2430; --soft: #536071; --line: #d7dde5;
  --accent: #1f4f8f;
  --correct: #176b3a; --correct-ground: #e9f5ee;
  --warning: #855000; --warning-ground: #fdf3e1;
  --error: #b0241c; --error-ground: #fcecea;
}
@media (prefers-color-scheme: dark) {
  :root {
    --ground: #12161c; --paper: #1b2129; --ink: #e5e9ef; --soft: #a4afbd; --line: #333d49;
    --accent: #94bdf4;
    --correct: #72d19c; --correct-ground: #15291f;
    --warning: #f0bd5e; --warning-ground: #2d2413;
    --error: #ff928a; --error-ground: #331b1b;
  }
}
* { box-sizing: border-box; }
body {
  margin: 0; background: var(--ground); color: var(--ink);
  font: 1rem/1.5 -apple-system, "Segoe UI", Roboto, "Liberation Sans", Arial, sans-serif;
  overflow-wrap: anywhere;
}
header, main, footer { max-width: 58rem; margin: 0 auto; padding: 0 1.5rem; }
header { padding-top: 2.5rem; }
h1 { margin: 0; font-size: 1.75rem; line-height: 1.2; font-weight: 600; letter-spacing: -.01em; }
header p { margin: .25rem 0 0; color: var(--soft); }
h2 { margin: 0 0 .75rem; font-size: 1.0625rem; line-height: 1.3; font-weight: 600; }
section { margin-top: 2rem; }
footer {
  margin-top: 2.5rem; padding-top: 0; padding-bottom: 2.5rem; color: var(--soft);
  font-size: .875rem;
}
bdi { white-space: pre-wrap; }
code { font-family: ui-monospace, "Cascadia Mono", Consolas, "Liberation Mono", monospace;
  font-size: .875em; white-space: pre-wrap; }
code, code bdi { display: block; }
code span { display: inline-block; max-width: 100%; }
ul, ol, dl, dd { margin: 0; padding: 0; }
ul, ol { list-style: none; }
.icon { width: 1.125rem; height: 1.125rem; margin-top: .1875rem; fill: none; stroke: currentColor;
  stroke-width: 1.6; stroke-linecap: round; stroke-linejoin: round; }
.correct { --tone: var(--correct); --tone-ground: var(--correct-ground); }
.warning { --tone: var(--warning); --tone-ground: var(--warning-ground); }
.error { --tone: var(--error); --tone-ground: var(--error-ground); }
.neutral { --tone: var(--ink); --tone-ground: var(--paper); }
.mark { display: grid; grid-template-columns: 1.125rem 1fr; column-gap: .75rem; }
.mark > .icon { color: var(--tone); }
.outcome { margin: 1.5rem 0 0; padding: .75rem 1rem; border-radius: .5rem; font-weight: 600;
  background: var(--tone-ground); color: var(--tone); }
.counts { display: grid; grid-template-columns: repeat(auto-fit, minmax(8.5rem, 1fr)); gap: .75rem;
  margin-top: .75rem; }
.counts div { display: flex; flex-direction: column-reverse; justify-content: flex-end;
  padding: .75rem 1rem .875rem; border: 1px solid var(--line); border-radius: .5rem;
  background: var(--paper); }
.counts dd { color: var(--tone); font-size: 1.75rem; line-height: 1.25; font-weight: 600;
  font-variant-numeric: tabular-nums; }
.counts dt { color: var(--soft); font-size: .875rem; line-height: 1.35; }
.facts { display: grid; grid-template-columns: minmax(8rem, max-content) 1fr; gap: .375rem 1.25rem;
  align-items: baseline; }
.facts dt { color: var(--soft); }
.box { border: 1px solid var(--line); border-radius: .5rem; background: var(--paper); }
.facts.box { padding: .875rem 1rem; }
.tree > li + li, .notes > li + li { border-top: 1px solid var(--line); }
.tree > li > .mark, .notes > li { padding: .625rem 1rem; }
.tree summary { display: block; cursor: pointer; border-radius: .5rem; padding: .625rem 1rem; }
.tree summary .mark { grid-template-columns: 1.125rem 1fr 1rem; font-weight: 600; }
.tree summary .mark::after { content: ""; width: .5rem; height: .5rem; margin: .5rem .25rem 0 0;
  border: solid var(--soft); border-width: 0 1.5px 1.5px 0; transform: rotate(-45deg);
  justify-self: end; }
.tree details[open] > summary .mark::after { transform: rotate(45deg); margin-top: .375rem; }
.tree summary::-webkit-details-marker { display: none; }
.tree summary:focus-visible { outline: 2px solid var(--accent); outline-offset: -2px; }
.tree ul { margin: -.125rem 1rem .75rem 1.5rem; padding-left: 1.25rem;
  border-left: 2px solid var(--line); }
.tree ul .mark { padding: .1875rem 0; }
.why { margin-left: 1.875rem; color: var(--accent); font-size: .875rem; }
.guides { padding: .875rem 1rem; }
.guides dt { font-weight: 600; }
.guides dt:target { background: var(--warning-ground); }
.guides dd + dt { margin-top: .875rem; }
.guides p { margin: .125rem 0 0; }
.more { color: var(--soft); font-size: .875rem; }
.tree ul summary { padding: 0; }
.tree ul summary .mark { font-weight: 400; }
.tree ul ul { margin: 0 0 .375rem .5rem; }
.names { margin: .25rem 0 0; color: var(--soft); }
.names li { display: inline; }
.names li + li::before { content: ", "; }
.notes .mark ~ .mark { margin-top: .5rem; }
.repair { padding: 1.125rem 1.25rem 1.25rem; border-left: 4px solid var(--error); }
.repair p { margin: 0 0 1rem; }
.steps { counter-reset: step; }
.steps > li { counter-increment: step; position: relative; padding-left: 2.25rem; }
.steps > li + li { margin-top: .875rem; }
.steps > li::before { content: counter(step) "."; position: absolute; left: 0; width: 1.5rem;
  color: var(--soft); font-weight: 600; text-align: right;
  font-variant-numeric: tabular-nums; }
.steps code { margin-top: .25rem; padding: .375rem .625rem; border-radius: .25rem;
  background: var(--ground); }
@media (max-width: 34rem) {
  header, main, footer { padding-left: 1rem; padding-right: 1rem; }
  header { padding-top: 1.5rem; }
  h1 { font-size: 1.5rem; }
  .facts { grid-template-columns: 1fr; gap: 0; }
  .facts dd + dt { margin-top: .625rem; }
  .counts { grid-template-columns: repeat(2, 1fr); }
}
@media print {
  :root {
    color-scheme: light;
    --ground: #ffffff; --paper: #ffffff; --ink: #000000; --soft: #3d4650; --line: #b5bcc5;
    --correct: #125c31; --warning: #6e4200; --error: #951b15;
    font-size: 10pt;
    --correct-ground: #ffffff; --warning-ground: #ffffff; --error-ground: #ffffff;
  }
  @page { margin: 18mm 16mm; }
  header, main, footer { max-width: none; padding: 0; }
  h2 { break-after: avoid; }
  section { margin-top: 1.25rem; }
  .outcome { border: 1px solid var(--tone); }
  .tree li, .steps li, .notes li, .counts { break-inside: avoid; }
  .tree summary .mark::after { display: none; }
  .tree details::details-content { display: block; content-visibility: visible; }
  .steps code { padding-left: 0; }
}
@media (forced-colors: active) {
  .icon { color: CanvasText; }
  .repair { border-left-color: CanvasText; }
}
)css";

}  // namespace tessary
