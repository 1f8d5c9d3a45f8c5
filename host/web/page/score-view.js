// The rendered score: pages from the render worker, measures found by document order (a
// measure's printed number is not unique: pickups, "12a"), and the selection as a rectangle of
// measures x staves that the mouse draws.
export class ScoreView {
  constructor(container, progress, onSelect) {
    this.container = container;
    this.progress = progress;
    this.onSelect = onSelect;
    this.measures = []; // g.measure elements in document order
    this.selection = null; // {firstMeasure, lastMeasure, firstStaff, lastStaff}, from 1
    this.anchor = null; // {measure, staff} of the last plain click
    this.renderId = 0;
    this.waiting = null;
    this.worker = new Worker('render-worker.js', { type: 'module' });
    this.worker.onmessage = (event) => this.receive(event.data);
    this.worker.onerror = (event) => this.finish(new Error(event.message || 'the renderer failed'));
    this.fontReady = new Promise((resolve) => (this.resolveFont = resolve));
    container.addEventListener('click', (event) => this.click(event));
  }

  // Renders `xml` in place of what is shown; resolves once every page is in (true), or when a
  // newer score took its place (false).
  render(xml) {
    this.finish(null, true);
    const id = ++this.renderId;
    this.showProgress('Loading the score…');
    this.worker.postMessage({ type: 'render', id, xml, width: this.container.clientWidth - 16 });
    return new Promise((resolve, reject) => (this.waiting = { id, resolve, reject, pages: [] }));
  }

  receive(message) {
    if (message.type === 'font') {
      const style = document.createElement('style');
      style.textContent = message.css;
      document.head.append(style);
      return this.resolveFont();
    }
    const job = this.waiting;
    if (!job || message.id !== job.id) return; // an older score
    if (message.type === 'pages') {
      job.count = message.count;
      this.container.replaceChildren();
      this.measures = [];
      this.showProgress(`Rendering page 1 of ${message.count}…`, 0, message.count);
    } else if (message.type === 'page') {
      this.addPage(message.svg);
      this.showProgress(`Rendering page ${message.number + 1} of ${job.count}…`,
        message.number, job.count);
    } else if (message.type === 'done') {
      this.finish();
    } else if (message.type === 'error') {
      this.finish(new Error(message.message));
    }
  }

  finish(error = null, superseded = false) {
    const job = this.waiting;
    this.waiting = null;
    this.progress.hidden = true;
    if (!job) return;
    if (error) job.reject(error);
    else {
      this.highlight();
      job.resolve(!superseded);
    }
  }

  showProgress(text, value, max) {
    this.progress.hidden = false;
    this.progress.querySelector('span').textContent = text;
    const bar = this.progress.querySelector('progress');
    if (max) {
      bar.max = max;
      bar.value = value;
    } else {
      bar.removeAttribute('value');
    }
  }

  addPage(svg) {
    const page = document.createElement('div');
    page.className = 'page';
    page.innerHTML = svg;
    // Pages out of view are neither laid out nor painted until they scroll in (.page in the
    // style sheet); their size comes from the drawing's own.
    const drawing = page.firstElementChild;
    page.style.containIntrinsicSize = `${drawing.getAttribute('width')} ${drawing.getAttribute('height')}`;
    this.container.append(page);
    for (const measure of page.querySelectorAll('g.measure')) {
      measure.dataset.index = String(this.measures.length + 1);
      this.measures.push(measure);
    }
    this.highlight();
  }

  // The measure and staff under a point of `page`: the measure whose box holds it, then the
  // staff of that measure nearest to it vertically.
  hit(page, x, y) {
    for (const measure of page.querySelectorAll('g.measure')) {
      const box = measure.getBoundingClientRect();
      if (x < box.left || x > box.right || y < box.top || y > box.bottom) continue;
      let best = null;
      for (const staff of measure.querySelectorAll(':scope > g.staff')) {
        const r = staff.getBoundingClientRect();
        const distance = y < r.top ? r.top - y : y > r.bottom ? y - r.bottom : 0;
        if (!best || distance < best.distance) best = { staff, distance };
      }
      if (best) return { measure: Number(measure.dataset.index), staff: Number(best.staff.dataset.n) };
    }
    return null;
  }

  click(event) {
    const page = event.target.closest('.page');
    const at = page && this.hit(page, event.clientX, event.clientY);
    if (!at) return;
    const from = event.shiftKey && this.anchor ? this.anchor : at;
    if (!event.shiftKey) this.anchor = at;
    this.select({
      firstMeasure: Math.min(from.measure, at.measure),
      lastMeasure: Math.max(from.measure, at.measure),
      firstStaff: Math.min(from.staff, at.staff),
      lastStaff: Math.max(from.staff, at.staff),
    });
  }

  select(selection) {
    this.selection = selection;
    if (!selection) this.anchor = null;
    this.highlight();
    this.onSelect(selection);
  }

  highlight() {
    for (const old of this.container.querySelectorAll('.selection-box')) old.remove();
    for (const old of this.container.querySelectorAll('g.staff.selected')) old.classList.remove('selected');
    const s = this.selection;
    if (!s) return;
    for (const measure of this.measures.slice(s.firstMeasure - 1, s.lastMeasure)) {
      for (const staff of measure.querySelectorAll(':scope > g.staff')) {
        const n = Number(staff.dataset.n);
        if (n < s.firstStaff || n > s.lastStaff) continue;
        staff.classList.add('selected');
        const box = staff.getBBox();
        const rect = document.createElementNS('http://www.w3.org/2000/svg', 'rect');
        rect.setAttribute('class', 'selection-box');
        for (const [key, value] of Object.entries({ x: box.x, y: box.y, width: box.width, height: box.height }))
          rect.setAttribute(key, String(value));
        staff.prepend(rect);
      }
    }
  }
}
