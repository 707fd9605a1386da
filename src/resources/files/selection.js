// The pictures of a page that are selected: marks on them, and what a person does to select. The program keeps the
// selection; the page tells it of clicks and is told what to mark.
window.previewSelection = window.previewSelection || (function () {
  // A page that tells of a failure has nothing to select.
  if (!window.previewStrips) {
    var nothing = function () { return ""; };
    return { show: nothing, update: nothing, openMenuByKey: nothing, configure: nothing, focused: nothing };
  }
  var colour = "#005afa";
  var threshold = 5;  // pixels, from which on a press becomes a rubber band
  var edge = 40;      // pixels at the top and the bottom of the window, where a rubber band scrolls the page
  var step = 14;      // pixels for each frame
  var checkSize = 26; // pixels
  var strip = 'img[id$="_menu"][onmousemove^="activateMenu"]';
  var controls = "a,button,input,select,textarea,label,summary,video,audio,iframe,[contenteditable]";
  var options = { clicksSelect: false };
  var selected = new Set(); // ids
  var marks = new Map();    // by object
  var hovered = null;       // the object that offers to be selected
  var check = null;         // the round button over it
  var band = null;
  var wasBand = false;      // since the button of the mouse went down
  var layer = null;         // what lies over the page: marks, check and band

  function isPicture(group) {
    return group && group.object && group.strips.some(function (image) {
      return /external\.(DeleteImage|AddImage)\(/.test(image.getAttribute("onclick"));
    });
  }

  function pictures() {
    return Array.from(document.querySelectorAll('[onmouseenter^="showMenu("]')).filter(function (object) {
      return object.getClientRects().length && isPicture(previewStrips.groupOfObject(object));
    });
  }

  function elementOf(event) { return event.target instanceof Element ? event.target : event.target.parentElement; }

  // The picture that an event means: itself, the one in the link, or the one below an overlay of its card.
  function pictureAt(event) {
    var target = elementOf(event);
    if (!target || target.matches(strip)) { return null; }
    if (target === check) { return hovered; }
    var own = target.closest('[onmouseenter^="showMenu("]');
    var link = own ? null : target.closest("a");
    var inside = link ? link.querySelectorAll('[onmouseenter^="showMenu("]') : [];
    var object = own || (inside.length == 1 ? inside[0] : null);
    var group = object ? previewStrips.groupOfObject(object) : previewStrips.covered(event);
    return isPicture(group) ? group.object : null;
  }

  // The one in the link that has the focus.
  function focusedPicture() {
    var focused = document.activeElement;
    if (!focused || focused === document.body) { return null; }
    var inside = focused.matches('[onmouseenter^="showMenu("]') ? [focused]
      : Array.from(focused.querySelectorAll('[onmouseenter^="showMenu("]'));
    var groups = inside.map(previewStrips.groupOfObject).filter(isPicture);
    return groups.length == 1 ? groups[0].object : null;
  }

  function select(ids, way) { window.external.Select(ids.join("\n"), way); }

  // --- What lies over the page.

  function ensureLayer() {
    if (layer && layer.isConnected) { return layer; }
    layer = document.createElement("div");
    layer.id = "preview_selection";
    layer.style.cssText = "all:initial;position:fixed;inset:0;z-index:2147483646;pointer-events:none;";
    document.documentElement.appendChild(layer);
    return layer;
  }

  function makeTick(isSet) {
    var tick = document.createElement("div");
    tick.style.cssText = "all:initial;pointer-events:none;position:absolute;box-sizing:border-box;width:" + checkSize + "px;height:" +
      checkSize + "px;border-radius:50%;border:2px solid #fff;cursor:pointer;box-shadow:0 1px 4px rgba(0,0,0,.5);" +
      "background:" + (isSet ? colour : "rgba(0,0,0,.35)") + " center/16px no-repeat url(\"data:image/svg+xml," +
      "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 16 16' fill='none' stroke='white' stroke-width='2.4' " +
      "stroke-linecap='round' stroke-linejoin='round'><path d='M3 8.5l3.4 3.4L13 4.6'/></svg>\");";
    return tick;
  }

  // What can be seen of an object: frames of the layout may cut it.
  function seenRect(object) {
    var rect = object.getBoundingClientRect();
    var seen = { left: rect.left, top: rect.top, right: rect.right, bottom: rect.bottom };
    for (var e = object.parentElement; e && e !== document.body; e = e.parentElement) {
      var look = getComputedStyle(e);
      if (look.overflowX == "visible" && look.overflowY == "visible") { continue; }
      var clip = e.getBoundingClientRect();
      seen.left = Math.max(seen.left, clip.left);
      seen.top = Math.max(seen.top, clip.top);
      seen.right = Math.min(seen.right, clip.right);
      seen.bottom = Math.min(seen.bottom, clip.bottom);
    }
    return seen;
  }

  function setPlace(element, rect) {
    element.style.left = rect.left + "px";
    element.style.top = rect.top + "px";
    element.style.width = Math.max(0, rect.right - rect.left) + "px";
    element.style.height = Math.max(0, rect.bottom - rect.top) + "px";
  }

  function placeTick(tick, rect) {
    tick.style.left = rect.right - checkSize - 6 + "px";
    tick.style.top = rect.top + 6 + "px";
  }

  function makeMark() {
    var mark = document.createElement("div");
    mark.className = "preview-selected";
    mark.style.cssText = "all:initial;pointer-events:none;position:absolute;box-sizing:border-box;border:4px solid " + colour +
      ";box-shadow:inset 0 0 0 1px #fff;background:rgba(0,90,250,.12);";
    var tick = makeTick(true);
    tick.style.right = tick.style.top = "4px";
    mark.appendChild(tick);
    return mark;
  }

  // Pages move under their marks: they are scrolled, and layouts turn and scale what is pointed at.
  function follow() {
    marks.forEach(function (mark, object) {
      var rect = seenRect(object);
      mark.style.display = object.isConnected && rect.right > rect.left && rect.bottom > rect.top ? "block" : "none";
      setPlace(mark, rect);
    });
    if (hovered && check) { placeTick(check, seenRect(hovered)); }
    if (marks.size || hovered) { requestAnimationFrame(follow); }
  }

  function show(ids) {
    selected = new Set(ids);
    update();
  }

  // Rows of a list come and go when it is scrolled.
  function update() {
    var wasIdle = !marks.size && !hovered;
    var objects = selected.size ? pictures().filter(function (object) { return selected.has(object.id); }) : [];
    marks.forEach(function (mark, object) {
      if (objects.indexOf(object) < 0) {
        mark.remove();
        marks.delete(object);
      }
    });
    objects.forEach(function (object) {
      if (!marks.has(object)) {
        var mark = makeMark();
        marks.set(object, mark);
        ensureLayer().appendChild(mark);
        setPlace(mark, seenRect(object));
      }
    });
    if (hovered && selected.has(hovered.id)) { leave(); }
    if (wasIdle && marks.size) { requestAnimationFrame(follow); }
  }

  // --- The round button that offers a picture under the mouse for a selection.

  function offer(object) {
    if (object === hovered) { return; }
    leave();
    var rect = object ? seenRect(object) : null;
    // A small picture has no room for it beside its strip of buttons.
    if (!object || selected.has(object.id) || rect.right - rect.left < 120 || rect.bottom - rect.top < 60) { return; }
    hovered = object;
    check = makeTick(false);
    check.id = "preview_check";
    check.style.pointerEvents = "auto";
    ensureLayer().appendChild(check);
    placeTick(check, rect);
    if (!marks.size) { requestAnimationFrame(follow); }
  }

  function leave() {
    if (check) { check.remove(); }
    check = hovered = null;
  }

  document.addEventListener("mousemove", function (event) {
    if (!band && event.target !== check) { offer(pictureAt(event)); }
  });
  document.documentElement.addEventListener("mouseleave", leave);

  // --- Clicks.

  function wayOf(event) {
    if (event.ctrlKey || event.metaKey) { return "toggle"; }
    if (event.shiftKey) { return "range"; }
    if (event.target === check) { return "toggle"; }
    if (options.clicksSelect) { return "only"; }
    // Where clicks follow links they select as soon as something is selected.
    if (selected.size) { return "toggle"; }
    return elementOf(event).closest("a") ? "" : "only";
  }

  document.addEventListener("click", function (event) {
    if (wasBand) {
      wasBand = false;
      event.preventDefault();
      event.stopPropagation();
      return;
    }
    if (event.button || event.defaultPrevented || !event.isTrusted || elementOf(event).matches(strip)) { return; }
    // Enter on a link is a click at no place; the second click of two is no click of its own.
    if (!event.detail || (options.clicksSelect && event.detail > 1 && pictureAt(event))) {
      if (event.detail) { event.preventDefault(); }
      return;
    }
    var object = pictureAt(event);
    var way = object ? wayOf(event) : "";
    if (object && way) {
      event.preventDefault();
      event.stopPropagation();
      select([object.id], way);
    } else if (!object && selected.size && !elementOf(event).closest(controls)) {
      select([], "these");
    }
  }, true);

  document.addEventListener("dblclick", function (event) {
    var object = pictureAt(event);
    if (object && options.clicksSelect && "TakeSelected" in window.external) {
      window.external.TakeSelected(object.id);
    }
  }, true);

  // --- The rubber band.

  function isFree(event) {
    var target = elementOf(event);
    return !event.button && target && !target.matches(strip) && !target.closest(controls) && !pictureAt(event) &&
      !target.closest('[onmouseenter^="showMenu("]') && event.clientX < document.documentElement.clientWidth &&
      event.clientY < innerHeight;
  }

  document.addEventListener("mousedown", function (event) {
    wasBand = false;
    band = isFree(event) ? { x: event.clientX + scrollX, y: event.clientY + scrollY, isDrawn: false, ids: new Set(),
                             more: event.ctrlKey || event.shiftKey || event.metaKey } : null;
  }, true);

  function drawBand() {
    var left = Math.min(band.x, band.toX) - scrollX, top = Math.min(band.y, band.toY) - scrollY;
    var right = Math.max(band.x, band.toX) - scrollX, bottom = Math.max(band.y, band.toY) - scrollY;
    setPlace(band.box, { left: left, top: top, right: right, bottom: bottom });
    pictures().forEach(function (object) {
      var rect = seenRect(object);
      var isIn = rect.left < right && rect.right > left && rect.top < bottom && rect.bottom > top;
      if (isIn) { band.ids.add(object.id); } else { band.ids.delete(object.id); }
    });
    selected = new Set(band.more ? Array.from(band.before).concat(Array.from(band.ids)) : band.ids);
    update();
  }

  function startBand() {
    band.isDrawn = true;
    band.before = selected;
    band.box = document.createElement("div");
    band.box.id = "preview_band";
    band.box.style.cssText = "all:initial;pointer-events:none;position:absolute;box-sizing:border-box;border:1px solid " + colour +
      ";background:rgba(0,90,250,.15);";
    ensureLayer().appendChild(band.box);
    leave();
    requestAnimationFrame(scrollOn);
  }

  document.addEventListener("mousemove", function (event) {
    if (!band) { return; }
    if (!(event.buttons & 1)) { endBand(); return; }
    band.pointer = event.clientY;
    band.toX = event.clientX + scrollX;
    band.toY = event.clientY + scrollY;
    if (!band.isDrawn && Math.hypot(band.toX - band.x, band.toY - band.y) < threshold) { return; }
    if (!band.isDrawn) { startBand(); }
    getSelection().removeAllRanges();
    drawBand();
  }, true);

  function scrollOn() {
    if (!band || !band.isDrawn) { return; }
    var direction = band.pointer < edge ? -1 : band.pointer > innerHeight - edge ? 1 : 0;
    var before = scrollY;
    if (direction) { scrollBy({ top: direction * step, behavior: "instant" }); }
    if (scrollY != before) {
      band.toY += scrollY - before;
      drawBand();
    }
    requestAnimationFrame(scrollOn);
  }

  function endBand() {
    var ended = band;
    band = null;
    if (!ended || !ended.isDrawn) { return; }
    ended.box.remove();
    wasBand = true;
    select(Array.from(ended.ids), ended.more ? "more" : "these");
  }

  document.addEventListener("mouseup", endBand, true);

  // --- The keyboard.

  function moveFocus(direction) {
    var all = pictures().filter(function (object) { return object.closest("a"); });
    var at = all.indexOf(focusedPicture());
    var next = all[at < 0 ? 0 : at + direction];
    if (!next) { return null; }
    next.closest("a").focus();
    next.scrollIntoView({ block: "nearest" });
    return next;
  }

  // A page that was made anew has its marks again, but nothing in it has the focus.
  function isSelectionMeant() { return selected.size > 0 && document.activeElement === document.body; }

  document.addEventListener("keydown", function (event) {
    if (event.defaultPrevented || event.altKey || elementOf(event).matches("input,textarea,select")) { return; }
    var object = focusedPicture();
    if (event.key == "Escape" && selected.size) {
      select([], "these");
    } else if (event.key == " " && object) {
      select([object.id], event.shiftKey ? "range" : "toggle");
    } else if (event.key == "Enter" && "TakeSelected" in window.external && (object || isSelectionMeant())) {
      window.external.TakeSelected(object ? object.id : selected.values().next().value);
    } else if (options.clicksSelect && (event.key == "ArrowDown" || event.key == "ArrowUp")) {
      var next = moveFocus(event.key == "ArrowDown" ? 1 : -1);
      if (next && event.shiftKey) { select([next.id], "range"); }
    } else {
      return;
    }
    event.preventDefault();
    event.stopPropagation();
  }, true);

  // --- The menu of a picture.

  function openMenu(object, x, y) {
    if ("OpenMenu" in window.external) { window.external.OpenMenu(object ? object.id : "", x, y); }
  }

  document.addEventListener("contextmenu", function (event) {
    event.preventDefault();
    if (elementOf(event).matches(strip)) { return; }
    var object = pictureAt(event);
    var group = object ? null : previewStrips.groupAt(event);
    if (!group || isPicture(group)) { openMenu(object, event.clientX, event.clientY); }
  }, true);

  // By keyboard, at the picture that has the focus.
  function openMenuByKey() {
    var object = focusedPicture();
    if (!object) { return false; }
    var rect = seenRect(object);
    openMenu(object, Math.round(rect.left + 20), Math.round(rect.top + 20));
    return true;
  }

  new MutationObserver(function () {
    if (selected.size) { update(); }
  }).observe(document.body, { childList: true, subtree: true });

  return {
    show: show, update: update, openMenuByKey: openMenuByKey,
    configure: function (given) { options = given; },
    focused: function () { var object = focusedPicture(); return object ? object.id : ""; }
  };
})();
