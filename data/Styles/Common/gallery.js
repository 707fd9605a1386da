/* What a script adds to the pages: keys, swipes, picture after picture without a new page, full screen, playing by
   itself. Without it every link still works. */
(() => {
  'use strict';
  // A page in the program's preview has an address of its own kind: there the links stay as they are.
  const isOnline = /^https?:$/.test(location.protocol);
  const isPublished = isOnline || location.protocol === 'file:';
  const calm = matchMedia('(prefers-reduced-motion: reduce)');
  const find = (selector, root = document) => root.querySelector(selector);
  const linked = (rel) => find(`a[rel="${rel}"]`) || find(`head link[rel="${rel}"]`);
  const isPicturePage = () => !!find('main.stage');
  const read = (key) => { try { return sessionStorage.getItem(key); } catch { return null; } };
  const keep = (key, value) => { try { sessionStorage.setItem(key, value); } catch { /* not allowed: then not */ } };

  /* Picture after picture in one page. */
  const pages = new Map();
  const nameOf = (url) => new URL(url, location).pathname.replace(/\d*\.\w+$/, '');
  const isSibling = (url) => isOnline && isPicturePage() && new URL(url, location).origin === location.origin
    && nameOf(url) === nameOf(location.href);

  function load(url) {
    const address = url.split('#')[0];
    if (!pages.has(address)) {
      pages.set(address, fetch(address).then(async (answer) => {
        if (!answer.ok) throw new Error(answer.statusText);
        const page = new DOMParser().parseFromString(await answer.text(), 'text/html');
        const picture = new Image();
        picture.src = new URL(find('main.stage figure > div > a > img', page).getAttribute('src'), address).href;
        return { page, picture };
      }));
      pages.get(address).catch(() => pages.delete(address));
    }
    return pages.get(address);
  }

  function show(page) {
    const held = document.activeElement && document.activeElement.getAttribute('rel');
    for (const old of document.head.querySelectorAll('title, meta[name="description"], meta[property], link[rel="prev"], link[rel="next"], link[rel="up"]')) old.remove();
    for (const part of page.head.querySelectorAll('title, meta[name="description"], meta[property], link[rel="prev"], link[rel="next"], link[rel="up"]')) document.head.append(document.importNode(part, true));
    const body = document.importNode(page.body, true);
    body.classList.toggle('idle', document.body.classList.contains('idle'));
    document.body.replaceWith(body);
    scrollTo(0, 0);
    dress();
    (held && find(`a[rel="${held}"]`) || find('main')).focus({ preventScroll: true });
  }

  let wanted = 0;
  async function go(url, isBack) {
    if (!isSibling(url)) { location.href = url; return; }
    const turn = ++wanted;
    try {
      const { page, picture } = await load(url);
      await Promise.race([picture.decode().catch(() => {}), new Promise((done) => setTimeout(done, 1500))]);
      if (turn !== wanted) return;
      if (!isBack) history.pushState(null, '', url);
      const change = () => show(page.cloneNode(true));
      // A transition that the next one overtakes is no trouble.
      if (document.startViewTransition && !calm.matches) document.startViewTransition(change).ready.catch(() => {}); else change();
    } catch {
      location.href = url;
    }
  }
  const follow = (link) => { if (link) go(link.href); };

  addEventListener('popstate', () => { if (isSibling(location.href) && !location.hash) go(location.href, true); });
  document.addEventListener('click', (event) => {
    const link = event.target.closest && event.target.closest('a[href]');
    if (!link || event.button || event.defaultPrevented || event.metaKey || event.ctrlKey || event.shiftKey || event.altKey) return;
    if (link.matches('[rel="up"]') && isPicturePage()) keep('return', '1');
    if (isSibling(link.href)) { event.preventDefault(); go(link.href); } else if (isOnline && link.closest('.path, .parent') && !isPicturePage()) climb(event, link);
  });

  // A gallery's parent names itself by the page that shows the gallery's cover: the way up goes on to the overview.
  function climb(event, link) {
    event.preventDefault();
    fetch(link.href).then((answer) => answer.text()).then((text) => {
      const up = find('a[rel="up"]', new DOMParser().parseFromString(text, 'text/html'));
      location.href = up ? new URL(up.getAttribute('href'), link.href).href : link.href;
    }).catch(() => { location.href = link.href; });
  }

  /* Keys and swipes. */
  const shots = () => [...document.querySelectorAll('.shot > div > a')];
  function moveFocus(key) {
    const all = shots();
    const at = all.indexOf(document.activeElement);
    if (!all.length || (at < 0 && key.startsWith('Arrow') && !/Left|Right/.test(key))) return false;
    const box = (a) => a.getBoundingClientRect();
    const below = (sign) => {
      const here = box(all[at]);
      const middle = here.left + here.width / 2;
      const way = (a) => Math.abs(box(a).left + box(a).width / 2 - middle) + 2 * Math.abs(box(a).top - here.top);
      return all.filter((a) => sign * (box(a).top - here.top) > here.height / 2).sort((a, b) => way(a) - way(b))[0];
    };
    const seen = () => all.find((a) => box(a).top >= 0) || all[0];
    const next = { Home: () => all[0], End: () => all[all.length - 1], ArrowDown: () => below(1), ArrowUp: () => below(-1),
      ArrowRight: () => at < 0 ? seen() : all[at + 1], ArrowLeft: () => at < 0 ? seen() : all[at - 1] }[key]();
    if (next) next.focus();
    return !!next;
  }

  addEventListener('keydown', (event) => {
    if (event.defaultPrevented || event.metaKey || event.ctrlKey || event.altKey || event.shiftKey || event.target.closest('input, textarea, select')) return;
    const key = event.key;
    if (!isPicturePage()) {
      if (/^(Arrow|Home$|End$)/.test(key) && moveFocus(key)) event.preventDefault();
      else if (key === 'Escape' && find('a.parent')) find('a.parent').click();
      return;
    }
    if (key === 'f' || key === 'F') { toggleScreen(); return; }
    if (key === 'Escape' && document.fullscreenElement) return;
    const link = linked({ ArrowLeft: 'prev', ArrowRight: 'next', Home: 'first', End: 'last', Escape: 'up' }[key]);
    if (!link) return;
    event.preventDefault();
    if (key === 'Escape') keep('return', '1');
    follow(link);
  });

  let start = null;
  addEventListener('touchstart', (event) => {
    start = event.touches.length === 1 && event.target.closest('main.stage') ? event.touches[0] : null;
  }, { passive: true });
  addEventListener('touchend', (event) => {
    if (!start || event.touches.length || (window.visualViewport && visualViewport.scale > 1.05)) return;
    const x = event.changedTouches[0].clientX - start.clientX;
    const y = event.changedTouches[0].clientY - start.clientY;
    start = null;
    if (Math.abs(x) > 48 && Math.abs(x) > 2 * Math.abs(y)) follow(linked(x < 0 ? 'next' : 'prev'));
  }, { passive: true });

  /* Full screen, and the slide show. */
  function toggleScreen() {
    if (document.fullscreenElement) document.exitFullscreen();
    else if (document.documentElement.requestFullscreen) document.documentElement.requestFullscreen().catch(() => {});
  }
  function tool(name, path, action) {
    const button = document.createElement('button');
    button.type = 'button';
    button.className = 'tool';
    button.title = name;
    button.setAttribute('aria-label', name);
    button.innerHTML = `<svg viewBox="0 0 24 24" aria-hidden="true"><path d="${path}"/></svg>`;
    button.addEventListener('click', action);
    find('.tools').append(button);
    return button;
  }

  let clock = 0;
  const seconds = () => Number(document.body.dataset.seconds) || 0;
  const isPlaying = () => read('play') === null ? !calm.matches : read('play') === 'on';
  function play(on) {
    keep('play', on ? 'on' : 'off');
    tick();
  }
  function tick() {
    clearTimeout(clock);
    if (!isPublished || !seconds() || !isPicturePage()) return;
    const on = isPlaying();
    document.body.classList.toggle('playing', on);
    const button = find('.play');
    if (button) {
      button.title = on ? 'Pause' : 'Play';
      button.setAttribute('aria-label', button.title);
      find('path', button).setAttribute('d', on ? 'M8.5 6v12M15.5 6v12' : 'M8 5.5v13l10.5-6.5z');
    }
    if (on && linked('last').href !== linked('first').href) clock = setTimeout(() => follow(linked('next') || linked('first')), seconds() * 1000);
  }
  const pause = (event) => { if (seconds() && isPicturePage() && isPlaying() && !event.target.closest('.play')) play(false); };
  addEventListener('touchstart', pause, { passive: true });
  addEventListener('keydown', (event) => { if (!/^(Shift|Control|Alt|Meta|Tab)$/.test(event.key)) pause(event); });

  // While the show runs and nobody moves, the controls leave.
  let rest = 0;
  function wake() {
    document.body.classList.remove('idle');
    clearTimeout(rest);
    rest = setTimeout(() => document.body.classList.toggle('idle', document.body.classList.contains('playing')), 3000);
  }
  for (const sign of ['pointermove', 'pointerdown', 'keydown', 'focusin']) addEventListener(sign, wake, { passive: true });

  /* A page that has just come. */
  function dress() {
    if (isPicturePage()) {
      if (isPublished && seconds()) tool('Play', '', () => play(!isPlaying())).classList.add('play');
      if (isPublished && document.fullscreenEnabled) tool('Full screen', 'M4 9V4h5M15 4h5v5M20 15v5h-5M9 20H4v-5', toggleScreen);
      tick();
      if (seconds()) rest ||= setTimeout(wake, 0);
      if (isOnline) for (const rel of ['next', 'prev']) if (linked(rel) && isSibling(linked(rel).href)) load(linked(rel).href).catch(() => {});
    }
  }

  // An overview is left at a place and found there again.
  const placeKey = `place ${location.pathname}`;
  if (!isPicturePage()) {
    addEventListener('pagehide', () => keep(placeKey, String(scrollY)));
    const target = location.hash && document.getElementById(decodeURIComponent(location.hash.slice(1)));
    if (target && read('return')) {
      const old = Number(read(placeKey));
      const isSeenFrom = (top) => {
        const place = target.getBoundingClientRect();
        return top <= place.top + scrollY && place.bottom + scrollY <= top + innerHeight;
      };
      const goBack = () => {
        if (isSeenFrom(old)) scrollTo(0, old); else if (!isSeenFrom(scrollY)) target.scrollIntoView({ block: 'center' });
        find('a', target).focus({ preventScroll: true });
      };
      goBack();
      // Pictures above may have come meanwhile, and the browser has moved to the address's place by itself.
      addEventListener('load', () => requestAnimationFrame(goBack));
    }
    keep('return', '');
  }
  dress();
})();
