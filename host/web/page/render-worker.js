// Engraves MusicXML with Verovio off the main thread and hands the pages back one by one, so
// that a long score shows its first page early and the page stays responsive meanwhile.
//
// In:  {type: 'render', id, xml, width}   width: CSS pixels the pages may take
// Out: {type: 'font', css}                 Bravura's @font-face, for note glyphs elsewhere
//      {type: 'pages', id, count}          the layout is done
//      {type: 'page', id, number, svg}     one page, in order
//      {type: 'done', id} | {type: 'error', id, message}
import createVerovioModule from './vendor/verovio-module.mjs';
import { VerovioToolkit } from './vendor/verovio.mjs';

const SCALE = 40; // percent

// Verovio embeds its music font in the SVG only when text uses SMuFL glyphs: a tempo mark made
// of the note glyphs brings Bravura along.
const NOTE_GLYPHS = ['E1D0', 'E1D2', 'E1D3', 'E1D5', 'E1D7', 'E1D9', 'E1DB', 'E1DD', 'E1E7'];
const GLYPH_SAMPLE = `<?xml version="1.0" encoding="UTF-8"?>
<mei xmlns="http://www.music-encoding.org/ns/mei" meiversion="5.0"><meiHead><fileDesc>
<titleStmt><title/></titleStmt><pubStmt/></fileDesc></meiHead><music><body><mdiv><score>
<scoreDef><staffGrp><staffDef n="1" lines="5" clef.shape="G" clef.line="2"/></staffGrp></scoreDef>
<section><measure n="1"><staff n="1"><layer n="1"><note dur="4" pname="c" oct="5"/></layer></staff>
<tempo staff="1" tstamp="1">${NOTE_GLYPHS.map((g) => `<rend glyph.auth="smufl">&#x${g};</rend>`).join(' ')}</tempo>
</measure></section></score></mdiv></body></music></mei>`;

const toolkit = createVerovioModule().then((module) => {
  const tk = new VerovioToolkit(module);
  tk.setOptions({ font: 'Bravura', smuflTextFont: 'embedded' });
  tk.loadData(GLYPH_SAMPLE);
  const svg = tk.renderToSVG(1);
  const start = svg.indexOf('@font-face');
  if (start >= 0) postMessage({ type: 'font', css: svg.slice(start, svg.indexOf('}', start) + 1) });
  return tk;
});

let latest = 0;
const queue = [];
let busy = false;

onmessage = (event) => {
  if (event.data.type !== 'render') return;
  latest = event.data.id;
  queue.push(event.data);
  if (!busy) drain();
};

async function drain() {
  busy = true;
  const tk = await toolkit;
  while (queue.length) {
    const job = queue.shift();
    if (job.id !== latest) continue; // a newer score is waiting
    try {
      await render(tk, job);
    } catch (error) {
      postMessage({ type: 'error', id: job.id, message: String(error?.message ?? error) });
    }
  }
  busy = false;
}

async function render(tk, { id, xml, width }) {
  tk.setOptions({
    font: 'Bravura',
    scale: SCALE,
    pageWidth: Math.max(800, Math.round((width * 100) / SCALE)),
    pageHeight: 2970,
    adjustPageHeight: true,
    breaks: 'auto',
    footer: 'none',
    svgAdditionalAttribute: ['measure@n', 'staff@n'],
  });
  if (!tk.loadData(xml)) throw new Error('Verovio could not read the score');
  const count = tk.getPageCount();
  postMessage({ type: 'pages', id, count });
  for (let number = 1; number <= count; number++) {
    postMessage({ type: 'page', id, number, svg: tk.renderToSVG(number) });
    await new Promise((resolve) => setTimeout(resolve)); // lets a newer score in
    if (id !== latest) return;
  }
  postMessage({ type: 'done', id });
}
