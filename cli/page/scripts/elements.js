// Makes elements. Whatever comes out of packages is set as text: nothing here reads markup.

function element(tag, properties, ...children) {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(properties || {})) {
    if (name === 'text') {
      made.textContent = value;
    } else if (name === 'onclick') {
      made.addEventListener('click', value);
    } else if (value !== null && value !== undefined && value !== false) {
      made.setAttribute(name, value === true ? '' : value);
    }
  }
  made.append(...children.filter((child) => child));
  return made;
}

function byId(id) {
  return document.getElementById(id);
}

// Text out of a package, whose direction of writing must not reach its surroundings.
function foreign(text, properties) {
  return element('bdi', {...properties, text});
}

// Prose of the catalogue, in which code stands between backticks.
function prose(tag, text) {
  const pieces = text.split('`').map((piece, i) => (i % 2 ? element('code', {text: piece}) : piece));
  return element(tag, {}, ...pieces);
}

const iconShapes = {
  accepted: 'M3.5 8.5l3 3 6-7',
  rejected: 'M4 4l8 8M12 4l-8 8',
  unjudged: 'M5.5 6a2.5 2.5 0 1 1 3.6 2.2c-.7.4-1.1.8-1.1 1.6M8 12.4v.1',
};

// Shapes tell verdicts apart for those who do not see the colours.
function icon(verdict) {
  const space = 'http://www.w3.org/2000/svg';
  const drawing = document.createElementNS(space, 'svg');
  drawing.setAttribute('viewBox', '0 0 16 16');
  drawing.setAttribute('class', 'icon');
  drawing.setAttribute('aria-hidden', 'true');
  const path = document.createElementNS(space, 'path');
  path.setAttribute('d', iconShapes[verdict]);
  drawing.append(path);
  return drawing;
}

function number(value) {
  return value.toLocaleString('en');
}

function counted(count, noun) {
  return `${number(count)} ${noun}${count === 1 ? '' : 's'}`;
}
