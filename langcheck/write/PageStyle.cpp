#include "langcheck/write/PageStyle.h"

// On paper, the colours are always those for a light screen, and what is folded is open: a closed
// "details" hides its contents in a box of its own.
const char *const kPageStyle = R"(
:root {
    color-scheme: light;
    --text: #1b1f24; --page: #fff; --rule: #c8ced6; --link: #0b57a4; --code: #f1f3f6;
    --good: #1a7f37; --good-back: #e6f4ea;
    --warning: #855900; --warning-back: #fff6dc;
    --error: #b80000; --error-back: #fdeaea;
}
@media screen and (prefers-color-scheme: dark) {
    :root {
        color-scheme: dark;
        --text: #e2e6eb; --page: #16191d; --rule: #48505a; --link: #8ec3ff; --code: #2a3038;
        --good: #5bc77a; --good-back: #12301c;
        --warning: #e2b340; --warning-back: #342a10;
        --error: #ff8f87; --error-back: #401b1b;
    }
}
html { font: 16px/1.45 sans-serif; color: var(--text); background: var(--page); }
body { max-width: 82rem; margin: 0 auto; padding: 1rem; overflow-wrap: anywhere; }
h1 { font-size: 1.5rem; margin: 0 0 .5rem; }
h2 { font-size: 1.25rem; margin: 2rem 0 .5rem; border-bottom: 1px solid var(--rule); }
h3 { font-size: 1.05rem; margin: 0 0 .4rem; }
a { color: var(--link); }
p { margin: .4rem 0; max-width: 72rem; }
ul { margin: .4rem 0; padding-inline-start: 1.2rem; }
nav ul, .folders { display: flex; flex-wrap: wrap; gap: .2rem 1.2rem; padding: 0; }
nav li, .folders li { list-style: none; }
table { border-collapse: collapse; }
th, td { text-align: start; vertical-align: top; padding: .2rem .8rem .2rem 0; }
th { font-weight: 600; }
code { font: .9em/1.4 monospace; background: var(--code); padding: .1em .3em; }
code { white-space: pre-wrap; }
.verdict { padding: .6rem .9rem; border-left: .5rem solid; font-size: 1.1rem; }
.good { border-color: var(--good); background: var(--good-back); }
.warning { border-color: var(--warning); background: var(--warning-back); }
.error { border-color: var(--error); background: var(--error-back); }
.finding, .language { break-inside: avoid; margin: 0 0 1rem; }
.finding { padding: .5rem .9rem; border-left-style: solid; border-left-width: .3rem; }
.finding li { margin: .4rem 0; }
.finding h3 a { font-weight: normal; font-size: .85rem; margin-inline-start: 1rem; }
:target { outline: 3px solid var(--link); }
.label { font-weight: 700; }
.none { color: var(--error); }
.rows tbody tr { border-top: 1px solid var(--rule); }
.rows th { overflow-wrap: normal; }
.rows tbody th { white-space: nowrap; }
.languages td { min-width: 6rem; }
.lines { width: 100%; }
.lines td { width: 100%; }
.lines th { padding-inline-start: .3rem; }
.lines p { margin: 0; font-size: .9rem; }
.windows { display: flex; flex-wrap: wrap; gap: .6rem; align-items: flex-start; }
.windows img { display: block; max-width: 100%; height: auto; }
details { margin: .4rem 0; }
@media screen and (max-width: 720px) {
    .computer th, .computer td { display: block; padding-right: 0; }
    .computer td { padding-bottom: .5rem; }
    .languages thead { display: none; }
    .languages tr { display: block; padding: .3rem 0; }
    .languages th, .languages td { display: inline; padding: 0; }
    .languages td::before { content: attr(data-label); }
}
@media print {
    html { font-size: 12px; }
    body { max-width: none; padding: 0; }
    h2, h3 { break-after: avoid; }
    tr { break-inside: avoid; }
    .windows img { zoom: .58; }
    details::details-content { content-visibility: visible; }
    * { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
    a { color: inherit; text-decoration: none; }
}
)";
