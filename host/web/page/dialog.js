// The plug-in's modal dialog in the page. It is built from the state the server publishes (the
// controls as the plug-in's handler left them: values, texts, enabled, visible, focus) and
// sends every user action back; the answer is the dialog's next state, or the command's end.
const OK = 1;
const CANCEL = 2;

// SMuFL note glyphs (Bravura) for the palettes' buttons: breve down to the 64th note.
const NOTE_GLYPHS = ['\uE1D0', '\uE1D2', '\uE1D3', '\uE1D5', '\uE1D7', '\uE1D9', '\uE1DB', '\uE1DD'];

// How the items of a dialog resource are grouped on screen: sections with a heading item and
// rows of items, where {palette: first} is the eight note-value buttons from `first`. Items a
// layout does not place still appear, after the sections; a resource without a layout shows
// all its items that way.
const LAYOUTS = {
  20256: {
    sections: [
      { heading: 20, rows: [[3], [4], [5, 7, 8, 6], [22, { palette: 25 }], [9, 11, 12, 10], [23, { palette: 33 }]] },
      { heading: 21, rows: [[13, 14, 15], [16, 18, 19, 17], [24, { palette: 41 }]] },
    ],
    buttons: [CANCEL, OK],
  },
};

export class DialogBox {
  // send(action) posts one action and resolves with the server's answer; alerts shows modal
  // alerts one after the other.
  constructor(layer, send, alerts) {
    this.layer = layer;
    this.box = layer.querySelector('.dialog');
    this.send = send;
    this.alerts = alerts;
    this.chain = Promise.resolve();
    this.elements = new Map();
    this.box.querySelector('.close').addEventListener('click', () => this.cancel());
    document.addEventListener('keydown', (event) => {
      if (event.key === 'Escape' && this.isOpen && this.alerts.layer.hidden) {
        event.preventDefault();
        this.cancel();
      }
    });
    this.dragging(this.box.querySelector('.title-bar'));
  }

  get isOpen() {
    return !this.layer.hidden;
  }

  open(state) {
    this.resource = state.resource;
    this.lastFocus = 0;
    this.build(state);
    this.layer.hidden = false;
    return this.update(state);
  }

  close() {
    this.layer.hidden = true;
    this.elements.clear();
  }

  // What was typed but not yet reported reaches the plug-in before Cancel, as in the host, where
  // the dialog keeps the texts that were typed before it was cancelled.
  cancel() {
    for (const [id, { element }] of this.elements) if (element.dataset.dirty) this.type(element, id);
    this.act({ kind: 'click', item: CANCEL });
  }

  // Queues an action behind those already on their way, so the plug-in sees them in order.
  act(action) {
    this.chain = this.chain.then(() => this.send(action)).catch(() => {});
    return this.chain;
  }

  build(state) {
    this.box.querySelector('.title').textContent = state.title;
    const body = this.box.querySelector('.body');
    const actions = this.box.querySelector('.actions');
    body.replaceChildren();
    actions.replaceChildren();
    this.elements.clear();
    const controls = new Map(state.controls.map((c) => [c.id, c]));
    const placed = new Set();
    const take = (id) => {
      const control = controls.get(id);
      if (!control || placed.has(id)) return null;
      placed.add(id);
      return this.element(control);
    };
    const layout = LAYOUTS[state.resource] ?? { sections: [], buttons: [] };
    for (const section of layout.sections) {
      const fieldset = document.createElement('fieldset');
      const legend = document.createElement('legend');
      legend.append(take(section.heading) ?? '');
      fieldset.append(legend);
      for (const row of section.rows) {
        const line = document.createElement('div');
        line.className = 'row';
        for (const cell of row) {
          if (typeof cell === 'number') line.append(take(cell) ?? '');
          else {
            const palette = document.createElement('div');
            palette.className = 'palette';
            for (let k = 0; k < 8; k++) {
              const button = take(cell.palette + k);
              if (!button) continue;
              button.classList.add('note');
              button.querySelector('span').textContent = NOTE_GLYPHS[k];
              palette.append(button);
            }
            line.append(palette);
          }
        }
        fieldset.append(line);
      }
      body.append(fieldset);
    }
    for (const id of layout.buttons) actions.append(take(id) ?? '');
    const rest = state.controls.filter((c) => !placed.has(c.id));
    if (rest.length) {
      const more = document.createElement('div');
      more.className = 'row other';
      for (const control of rest) more.append(take(control.id));
      body.append(more);
    }
  }

  element(control) {
    const id = control.id;
    const click = (event) => {
      event.preventDefault(); // the plug-in's handler decides what the control shows
      this.act({ kind: control.kind === 'checkbox' ? 'toggle' : 'click', item: id });
    };
    let element;
    if (control.kind === 'label') {
      element = document.createElement('span');
      element.className = 'label';
      element.textContent = control.label;
    } else if (control.kind === 'radio' || control.kind === 'checkbox') {
      element = document.createElement('label');
      element.className = control.kind;
      const input = document.createElement('input');
      input.type = control.kind;
      input.name = `item-${id}`;
      input.addEventListener('click', click);
      element.append(input, ` ${control.label}`);
      element.input = input;
    } else if (control.kind === 'number' || control.kind === 'text') {
      element = document.createElement('input');
      element.type = 'text';
      if (control.kind === 'number') element.inputMode = 'numeric';
      element.className = 'field';
      element.title = control.label;
      element.setAttribute('aria-label', control.label);
      element.addEventListener('input', () => (element.dataset.dirty = '1'));
      element.addEventListener('change', () => this.type(element, id));
      element.addEventListener('keydown', (event) => {
        if (event.key !== 'Enter') return;
        event.preventDefault();
        this.type(element, id);
        this.act({ kind: 'click', item: OK });
      });
      element.input = element;
    } else {
      element = document.createElement('button');
      element.type = 'button';
      element.title = control.label;
      element.setAttribute('aria-label', control.label);
      const text = document.createElement('span');
      text.textContent = control.label;
      element.append(text);
      if (id === OK) element.classList.add('default');
      element.addEventListener('click', click);
      element.input = element;
    }
    element.dataset.item = String(id);
    this.elements.set(id, { element, control });
    return element;
  }

  type(field, id) {
    if (!field.dataset.dirty) return;
    delete field.dataset.dirty;
    this.act({ kind: 'type', item: id, text: field.value });
  }

  // Shows the controls as the handler left them, then its alerts, then moves the focus where
  // the handler put it.
  async update(state) {
    this.place(state);
    this.box.querySelector('.title').textContent = state.title;
    for (const control of state.controls) {
      const known = this.elements.get(control.id);
      if (!known) continue;
      const { element } = known;
      known.control = control;
      element.hidden = !control.visible;
      element.classList.toggle('disabled', !control.enabled);
      if (element.input) element.input.disabled = !control.enabled;
      if (control.kind === 'label') element.textContent = control.label;
      else if (control.kind === 'radio' || control.kind === 'checkbox') element.input.checked = control.value !== 0;
      else if (control.kind === 'button') element.setAttribute('aria-pressed', String(control.value !== 0));
      else if (!(element.dataset.dirty && document.activeElement === element)) {
        element.value = control.text;
        delete element.dataset.dirty;
      }
    }
    for (const alert of state.alerts ?? []) await this.alerts.show(alert.text);
    if (state.focus && (state.focus !== this.lastFocus || state.alerts?.length)) {
      const target = this.elements.get(state.focus)?.element.input;
      target?.focus();
      if (target?.select) target.select();
    }
    this.lastFocus = state.focus;
  }

  // The engine's screen has its origin at the bottom left, y upward; the page's at the top left.
  place(state) {
    this.screenHeight = state.screen.height;
    const left = state.frame.x;
    const top = state.screen.height - (state.frame.y + state.frame.height);
    const maxLeft = Math.max(0, innerWidth - this.box.offsetWidth);
    const maxTop = Math.max(0, innerHeight - this.box.offsetHeight);
    this.box.style.left = `${Math.min(Math.max(0, left), maxLeft)}px`;
    this.box.style.top = `${Math.min(Math.max(0, top), maxTop)}px`;
  }

  dragging(handle) {
    handle.addEventListener('pointerdown', (down) => {
      if (down.target.closest('button')) return;
      const startX = down.clientX - this.box.offsetLeft;
      const startY = down.clientY - this.box.offsetTop;
      handle.setPointerCapture(down.pointerId);
      const move = (event) => {
        this.box.style.left = `${event.clientX - startX}px`;
        this.box.style.top = `${event.clientY - startY}px`;
      };
      const up = () => {
        handle.removeEventListener('pointermove', move);
        handle.removeEventListener('pointerup', up);
        const left = this.box.offsetLeft;
        const top = this.screenHeight - this.box.offsetTop;
        this.act({ kind: 'move', left, top });
      };
      handle.addEventListener('pointermove', move);
      handle.addEventListener('pointerup', up);
    });
  }
}

// Modal alerts, one at a time; show() resolves when the user dismisses it.
export class AlertBox {
  constructor(layer) {
    this.layer = layer;
    this.queue = Promise.resolve();
  }

  show(text) {
    this.queue = this.queue.then(() => new Promise((resolve) => {
      this.layer.querySelector('p').textContent = text;
      this.layer.hidden = false;
      const button = this.layer.querySelector('button');
      const done = (event) => {
        if (event.type === 'keydown' && event.key !== 'Escape' && event.key !== 'Enter') return;
        event.preventDefault();
        event.stopPropagation();
        button.removeEventListener('click', done);
        this.layer.removeEventListener('keydown', done);
        this.layer.hidden = true;
        resolve();
      };
      button.addEventListener('click', done);
      this.layer.addEventListener('keydown', done);
      button.focus();
    }));
    return this.queue;
  }
}
