// SPDX-License-Identifier: MIT
// Names and scripts that try to break out of a page. None may set window.harmed.

const harm = 'window.harmed=1';

export const kNames = [
  ['end of script', `</script><script>${harm}</script>`],
  ['end of script, other case', `</ScRiPt ><script>${harm}</script>`],
  ['comment in script', '<!--<script>'],
  ['end of comment', `--><script>${harm}</script>`],
  ['image', `<img src=x onerror="${harm}">`],
  ['end of title', `</title><svg onload=${harm}>`],
  ['quotes', `" onload="${harm}" x='`],
  ['apostrophes', `' onfocus='${harm}' autofocus '`],
  ['script address', `javascript:${harm}`],
  ['data address', `data:text/html,<script>${harm}</script>`],
  ['line separators', 'a\u2028b\u2029c'],
  ['entities', '&lt;script&gt;&#x3c;&quot;'],
  ['template', '{{settings}}${harm}`{{scripts}}'],
  ['invalid UTF-8', Buffer.from([0x61, 0xff, 0xc0, 0xaf, 0xed, 0xa0, 0x80, 0x3c])],
  ['right to left', '\u202egnp.exe\u2066'],
  ['very long', '<b>' + 'x'.repeat(180)],
  ['prototype', '__proto__'],
  ['folders', '../../index'],
  ['controls', 'a\x01\x1b[31m\r\n\tb'],
];

/** Scripts that run, and what window.ran is then; undefined: they are no JavaScript, and nothing of them runs. */
export const kScripts = [
  ['end of script in a text', `window.ran="</script><script>${harm}</script>".length`, `</script><script>${harm}</script>`.length],
  ['end of script alone', `</script><script>${harm}</script>`, undefined],
  ['comment in script', 'window.ran="<!--<script>"', '<!--<script>'],
  ['line separators', 'window.ran="a\u2028b\u2029".length', 4],
  ['line comment at the end', 'window.ran=1 // the end', 1],
  ['open comment', '/* window.ran=1', undefined],
  ['open string', 'window.ran="', undefined],
  ['template and backslashes', 'window.ran=`${1+1}\\\\\\u003c`', '2\\<'],
  ['quotes', `window.ran='"'+"'"`, `"'`],
  ['end of comment, which begins one in JavaScript', '--> window.ran=1\nwindow.ran=2', 2],
  ['entities', 'window.ran="&lt;&amp;"', '&lt;&amp;'],
  ['carriage returns', 'window.ran=1\r\nwindow.ran=2\r', 2],
  ['strict mode and return', '"use strict"; return 1', undefined],
  ['end of JSON', `"}</script>${harm}`, undefined],
  ['characters beyond', 'window.ran="\u{1F600}ä\u0000"', '😀ä\ufffd'],
  ['huge', `window.ran=1;//${'x'.repeat(3_000_000)}`, 1],
];
