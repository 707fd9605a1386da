// The strips of buttons in a page on the screen. Each object that can be edited has a group of images before it: the
// strip at rest, then one for each button lit. They share an id, and that id is the name of their collection.
var imageSize = 24; // of a button, in pixels

function showObject(obj) { obj.style.display = "inline"; }
function hideObject(obj) { obj.style.display = "none"; }
function isObjectVisible(obj) { return obj.style.display == "inline"; }

function limitCoordinate(coord, limit) {
  if (coord >= limit) { return limit - 1; }
  return coord < 0 ? 0 : coord;
}

function showMenu(menu) { previewStrips.show(previewStrips.groupOf(menu)); }
function hideMenu(menu) { previewStrips.leave(previewStrips.groupOf(menu)); }

function activateMenu(menu) {
  var group = previewStrips.groupOf(menu);
  var x = event.offsetX;
  if (!isObjectVisible(event.target)) { x += document.body.scrollLeft; }
  previewStrips.light(group, previewStrips.buttonAt(group, x));
}

var previewStrips = (function () {
  var selector = 'img[id$="_menu"][onmousemove^="activateMenu"]';
  // The page may take rows out and put them in again: what has gone is not held on to.
  var groups = new WeakMap();  // by strip
  var objects = new WeakMap(); // groups by object
  var open = new Set();   // the groups that are on the screen

  // The layout's own rules for images are not for the strips.
  var style = document.createElement("style");
  style.textContent = selector + "{" + [
    "height:24px", "width:auto", "min-width:0", "min-height:0", "max-width:none", "max-height:none", "margin:0",
    "padding:0", "border:0", "outline:0", "border-radius:0", "box-shadow:none", "box-sizing:content-box",
    "opacity:1", "visibility:visible", "filter:none", "transform:none", "rotate:none", "scale:none",
    "translate:none", "transition:none", "animation:none", "clip:auto", "clip-path:none", "-webkit-mask:none",
    "float:none", "right:auto", "bottom:auto", "object-fit:fill", "aspect-ratio:auto", "background:none",
    "mix-blend-mode:normal", "pointer-events:auto", "cursor:pointer", "z-index:2147483647"
  ].map(function (rule) { return rule + "!important"; }).join(";") + "}" +
    selector + '[style*="display:none"],' + selector + '[style*="display: none"]{display:none!important}' +
    ".preview-missing{display:inline-block;min-width:10em;min-height:5em;outline:1px dashed currentColor}";
  document.head.appendChild(style);

  // Two elements may show one text: then their strips share the id, and each group begins with a strip at rest.
  function collect() {
    var group = null;
    document.querySelectorAll(selector).forEach(function (strip) {
      if (groups.has(strip)) { return; }
      if (!strip.hasAttribute("onclick") || !group || group.strips[0].id != strip.id) {
        group = { strips: [], object: objectBehind(strip) };
        if (group.object && !objects.has(group.object)) {
          objects.set(group.object, group);
          makeReachable(group.object);
        }
      }
      group.strips.push(strip);
      groups.set(strip, group);
      strip.title = strip.alt;
    });
  }

  // By the Tab key: what is no link, and is in none, is reached by itself.
  function makeReachable(object) {
    var reached = 'a[href],button,[tabindex]';
    if (!object.closest(reached) && !object.querySelector(reached)) { object.tabIndex = 0; }
  }

  function objectBehind(strip) {
    var objects = document.querySelectorAll('[onmouseenter="showMenu(' + strip.id + ');"]');
    for (var i = 0; i < objects.length; ++i) {
      if (strip.compareDocumentPosition(objects[i]) & Node.DOCUMENT_POSITION_FOLLOWING) { return objects[i]; }
    }
    return null;
  }

  function groupOf(menu) {
    var strips = menu instanceof Element ? [menu] : Array.from(menu);
    if (!groups.has(strips[0])) { collect(); }
    var at = window.event ? event.currentTarget : null;
    for (var i = 0; i < strips.length; ++i) {
      var group = groups.get(strips[i]);
      if (group && (strips[i] === at || group.object === at)) { return group; }
    }
    return groups.get(strips[0]);
  }

  // What is seen of an image is less than its box where the layout fits it into one.
  function pictureRect(object) {
    var box = object.getClientRects()[0] || object.getBoundingClientRect();
    var look = getComputedStyle(object);
    if (object.tagName != "IMG" || !object.naturalWidth || !/contain|scale-down|none/.test(look.objectFit)) {
      return box;
    }
    var scale = Math.min(box.width / object.naturalWidth, box.height / object.naturalHeight);
    if (look.objectFit == "none" || (look.objectFit == "scale-down" && scale > 1)) { scale = 1; }
    var width = Math.min(box.width, object.naturalWidth * scale);
    var height = Math.min(box.height, object.naturalHeight * scale);
    var place = look.objectPosition.split(" ").map(parseFloat);
    return new DOMRect(box.left + (box.width - width) * place[0] / 100,
                       box.top + (box.height - height) * (place.length > 1 ? place[1] : 50) / 100, width, height);
  }

  // Where the strip belongs: the corner of what can be seen of the object.
  function corner(group) {
    var rect = pictureRect(group.object);
    var left = rect.left, top = rect.top;
    for (var e = group.object.parentElement; e && e !== document.body; e = e.parentElement) {
      var overflow = getComputedStyle(e).overflow;
      if (overflow != "visible" && overflow.indexOf("visible visible") < 0) {
        var clip = e.getBoundingClientRect();
        if (clip.width && clip.height) {
          left = Math.max(left, clip.left);
          top = Math.max(top, clip.top);
        }
      }
    }
    var width = imageSize * (group.strips.length - 1);
    var at = { left: Math.max(0, Math.min(Math.max(left, 0), innerWidth - width)), top: Math.max(top, 0) };
    var middle = { left: rect.left + rect.width / 2, top: rect.top + rect.height / 2 };
    var isCovered = middle.left >= at.left && middle.left < at.left + width &&
      middle.top >= at.top && middle.top < at.top + imageSize;
    return isCovered ? placeBeside(rect, at, width) : at;
  }

  // Over a small object the strip would leave no place to click. It overlaps the object by a pixel, so that the mouse
  // finds no gap between them.
  function placeBeside(rect, at, width) {
    var places = [
      { left: at.left, top: rect.top + 1 - imageSize },
      { left: rect.right - 1, top: at.top },
      { left: at.left, top: rect.bottom - 1 },
      { left: rect.left + 1 - width, top: at.top }
    ];
    return places.find(function (place) {
      return place.left >= 0 && place.top >= 0 && place.left + width <= innerWidth &&
        place.top + imageSize <= innerHeight;
    }) || at;
  }

  function shown(group) { return group.strips.find(isObjectVisible); }

  function setPlace(group, left, top) {
    group.strips.forEach(function (strip) {
      strip.style.left = left + "px";
      strip.style.top = top + "px";
    });
  }

  // Whether the mouse reaches the strip where it is said to be.
  function works(group, at) {
    var strip = shown(group), rect = strip.getBoundingClientRect();
    var width = imageSize * (group.strips.length - 1);
    if (Math.abs(rect.left - at.left) > 1 || Math.abs(rect.top - at.top) > 1 ||
        Math.abs(rect.width - width) > 1 || Math.abs(rect.height - imageSize) > 1) { return false; }
    for (var x = at.left + imageSize / 2; x < at.left + width; x += imageSize) {
      var y = at.top + imageSize / 2;
      if (x < innerWidth && y < innerHeight && document.elementFromPoint(x, y) !== strip) { return false; }
    }
    return true;
  }

  // Beside its object the strip keeps the object's ":hover" alive. Where something cuts, covers, turns or scales it
  // there, it goes to the top of the page.
  function place(group) {
    var at = corner(group);
    if (group.at && Math.abs(group.at.left - at.left) < 0.5 && Math.abs(group.at.top - at.top) < 0.5) { return; }
    if (!group.lifted) {
      setPlace(group, 0, 0);
      var origin = shown(group).getBoundingClientRect();
      setPlace(group, at.left - origin.left, at.top - origin.top);
      if (!works(group, at)) { lift(group); }
    }
    if (group.lifted) { setPlace(group, at.left, at.top); }
    group.at = at;
  }

  function lift(group) {
    group.lifted = true;
    var top = group.object.closest("dialog[open]") || document.documentElement;
    group.strips.forEach(function (strip) {
      strip.style.position = "fixed";
      top.appendChild(strip);
    });
  }

  // The page may move under the mouse: it is scrolled, and layouts raise and scale what is pointed at.
  function follow() {
    open.forEach(function (group) {
      if (group.object.isConnected) { place(group); } else { close(group); }
    });
    if (open.size) { requestAnimationFrame(follow); }
  }

  function show(group) {
    if (!group || !group.object || shown(group)) { return; }
    showObject(group.strips[0]);
    group.at = null;
    place(group);
    lightBelowMouse(group);
    if (!open.size) { requestAnimationFrame(follow); }
    open.add(group);
  }

  // A strip that comes up under the mouse is not moved on yet.
  function lightBelowMouse(group) {
    var rect = group.strips[0].getBoundingClientRect(), mouse = window.event;
    if (mouse && mouse.clientX >= rect.left && mouse.clientX < rect.right &&
        mouse.clientY >= rect.top && mouse.clientY < rect.bottom) {
      light(group, buttonAt(group, mouse.clientX - rect.left));
    }
  }

  function close(group) {
    if (!group) { return; }
    group.strips.forEach(hideObject);
    open.delete(group);
  }

  // From the picture onto its strip and back is no way out; it only puts the lit button out.
  function leave(group) {
    var target = window.event ? event.relatedTarget : null;
    if (group && target && group.strips.indexOf(target) >= 0) { return; }
    if (group && target && group.object && group.object.contains(target)) { light(group, 0); return; }
    close(group);
  }

  // From 1 on. The width is that of the collection, which an image that isn't shown could not tell.
  function buttonAt(group, offset) {
    var x = limitCoordinate(offset, imageSize * (group.strips.length - 1));
    return (x - x % imageSize) / imageSize + 1;
  }

  function light(group, index) {
    group.strips.forEach(function (strip, i) { if (i != index) { hideObject(strip); } });
    if (!isObjectVisible(group.strips[index])) { showObject(group.strips[index]); }
  }

  // The picture under an overlay of its own card gets no mouse events of its own.
  function coveredGroup(event) {
    var below = document.elementsFromPoint(event.clientX, event.clientY);
    for (var i = 1; i < below.length; ++i) {
      var group = below[i].tagName == "IMG" && below[i].hasAttribute("onmouseenter") ? groupOfObject(below[i]) : null;
      var frame = group && below[i].closest("div[align]");
      if (frame && frame.parentElement.contains(event.target)) { return group; }
    }
    return null;
  }

  function groupOfObject(object) {
    if (!objects.has(object)) { collect(); }
    return objects.get(object) || null;
  }

  // By keyboard: the menu key or Shift+F10 opens the strip of what is in the focused link, the arrows go from button to
  // button, Enter presses one and Escape closes the strip.
  var openedByKey = null; // a group
  function openByKey() {
    var focused = document.activeElement, edited = '[onmouseenter^="showMenu("]';
    var object = !focused ? null : focused.matches(edited) ? focused : focused.querySelector(edited);
    var group = object ? groupOfObject(object) : null;
    open.forEach(close);
    if (group) {
      object.scrollIntoView({ block: "nearest" });
      show(group);
      light(group, 1);
    }
    openedByKey = group;
    return group;
  }

  function moveByKey(group, step) {
    var buttons = group.strips.length - 1;
    var lit = group.strips.indexOf(shown(group));
    light(group, lit < 1 ? (step > 0 ? 1 : buttons) : (lit - 1 + step + buttons) % buttons + 1);
  }

  function pressByKey(group) {
    var strip = shown(group);
    close(group);
    if (strip !== group.strips[0]) { strip.click(); }
  }

  document.addEventListener("keydown", function (event) {
    var isMenuKey = event.key == "ContextMenu" || (event.key == "F10" && event.shiftKey);
    if (isMenuKey && window.previewSelection && previewSelection.openMenuByKey()) {
      open.forEach(close);
      event.preventDefault();
      event.stopPropagation();
      return;
    }
    var group = isMenuKey ? openByKey() : Array.from(open).pop();
    if (!group || event.key == "Tab") { open.forEach(close); return; }
    // A strip that has come up under the mouse is not what a key is for.
    if (group !== openedByKey) {
      if (event.key == "Escape") { close(group); }
      return;
    }
    if (event.key == "ArrowRight" || event.key == "ArrowLeft") { moveByKey(group, event.key == "ArrowRight" ? 1 : -1); }
    else if (event.key == "Enter") { pressByKey(group); }
    else if (event.key == "Escape") { close(group); }
    else if (!isMenuKey) { return; }
    event.preventDefault();
    event.stopPropagation();
  }, true);

  document.addEventListener("mousemove", function (event) {
    var direct = event.target instanceof Element &&
      (groups.has(event.target) || event.target.closest('[onmouseenter^="showMenu("]'));
    var covered = direct ? null : coveredGroup(event);
    open.forEach(function (group) {
      var inside = group.strips.indexOf(event.target) >= 0 || group.object.contains(event.target);
      if (!inside && group !== covered) { close(group); }
    });
    if (covered) { show(covered); }
  });
  document.documentElement.addEventListener("mouseleave", function () { open.forEach(close); });

  // A strip may stand inside a link, which is not what a click on a button means.
  document.addEventListener("click", function (event) {
    if (groups.has(event.target)) { event.preventDefault(); }
  }, true);

  // A picture that can't be shown keeps room for its buttons, so that it can be taken out.
  document.addEventListener("error", function (event) {
    if (event.target instanceof Element && event.target.hasAttribute("onmouseenter")) {
      event.target.classList.add("preview-missing");
    }
  }, true);
  document.addEventListener("DOMContentLoaded", collect);

  // The object that an event means, if it has such a strip: itself, its strip's, or the one below an overlay.
  function groupAt(event) {
    var target = event.target instanceof Element ? event.target : event.target.parentElement;
    if (groups.has(target)) { return groups.get(target); }
    var object = target.closest('[onmouseenter^="showMenu("]') || target.querySelector('[onmouseenter^="showMenu("]');
    return object ? groupOfObject(object) : coveredGroup(event);
  }

  return { show: show, leave: leave, light: light, buttonAt: buttonAt, groupOf: groupOf, groupAt: groupAt,
           groupOfObject: groupOfObject, covered: coveredGroup };
})();

// Pictures are dragged by the program, which asks the page where they would go.
var previewDragging = (function () {
  var edge = 40;  // pixels at the top and the bottom of the window, where a drag scrolls the page
  var step = 12;  // pixels for each frame
  var mark = null;
  var pointer = null;
  var wasDragged = false; // since the button of the mouse went down

  function isPicture(group) {
    return group && group.object && group.strips.some(function (strip) {
      return /external\.(MoveImageUp|AddImage)\(/.test(strip.getAttribute("onclick"));
    });
  }

  document.addEventListener("dragstart", function (event) {
    event.preventDefault();
    wasDragged = true;
    var group = previewStrips.groupAt(event);
    if (isPicture(group) && "DragImage" in window.external) {
      window.external.DragImage(group.object.id, group.object.currentSrc || "");
    }
  }, true);

  // A picture that is let go over itself was not clicked.
  document.addEventListener("mousedown", function () { wasDragged = false; }, true);
  document.addEventListener("click", function (event) {
    if (wasDragged) {
      event.preventDefault();
      event.stopPropagation();
    }
    wasDragged = false;
  }, true);

  function pictures() {
    return Array.from(document.querySelectorAll('[onmouseenter^="showMenu("]')).filter(function (object) {
      return isPicture(previewStrips.groupOfObject(object)) && object.getClientRects().length;
    }).map(function (object) { return { object: object, rect: object.getBoundingClientRect() }; });
  }

  function distance(rect, x, y) {
    return Math.hypot(Math.max(rect.left - x, 0, x - rect.right), Math.max(rect.top - y, 0, y - rect.bottom));
  }

  // Whether pictures stand side by side there, or one below the other.
  function standsInRow(all, at) {
    return [all[at - 1], all[at + 1]].some(function (other) {
      return other && other.rect.top < all[at].rect.bottom && other.rect.bottom > all[at].rect.top &&
        (other.rect.left >= all[at].rect.right || other.rect.right <= all[at].rect.left);
    });
  }

  // The gap between pictures that is nearest to a place: the picture beside it, and which side of that it is.
  function gapAt(x, y) {
    var all = pictures();
    if (!all.length) { return null; }
    var at = 0;
    all.forEach(function (picture, i) { if (distance(picture.rect, x, y) < distance(all[at].rect, x, y)) { at = i; } });
    var rect = all[at].rect;
    var inRow = standsInRow(all, at) || all.length == 1;
    var after = inRow ? x > (rect.left + rect.right) / 2 : y > (rect.top + rect.bottom) / 2;
    return { id: all[at].object.id, after: after, inRow: inRow, rect: rect };
  }

  function showMark(style) {
    if (!mark) {
      mark = document.createElement("div");
      mark.id = "preview_drop_mark";
      document.documentElement.appendChild(mark);
    }
    mark.style.cssText = "all:initial;position:fixed;z-index:2147483647;pointer-events:none;" + style;
  }

  // Shows where a picture of the page would go.
  function markGap(x, y) {
    var gap = gapAt(x, y);
    if (!gap) {
      markPage();
      return;
    }
    var bar = "background:#005afa;border-radius:3px;box-shadow:0 0 0 1px #fff,0 1px 4px rgba(0,0,0,.5);";
    var rect = gap.rect;
    if (gap.inRow) {
      var left = Math.min(Math.max((gap.after ? rect.right : rect.left) - 3, 1), innerWidth - 7);
      showMark(bar + "left:" + left + "px;top:" + rect.top + "px;width:6px;height:" + rect.height + "px;");
    } else {
      var top = Math.min(Math.max((gap.after ? rect.bottom : rect.top) - 3, 1), innerHeight - 7);
      showMark(bar + "left:" + rect.left + "px;top:" + top + "px;width:" + rect.width + "px;height:6px;");
    }
    scrollAt(x, y);
  }

  // Shows that a picture would come onto a page that has none yet.
  function markPage() {
    showMark("inset:0;border:4px solid #005afa;box-shadow:inset 0 0 0 1px #fff;box-sizing:border-box;");
  }

  function clear() {
    pointer = null;
    if (mark) { mark.remove(); }
    mark = null;
  }

  // "photo3 1": after that picture; "photo3 0": before it.
  function take(x, y) {
    var gap = gapAt(x, y);
    clear();
    return gap ? gap.id + (gap.after ? " 1" : " 0") : "";
  }

  function scrollAt(x, y) {
    var isWaiting = pointer !== null;
    pointer = { x: x, y: y };
    if (!isWaiting) { requestAnimationFrame(scrollOn); }
  }

  function scrollOn() {
    if (!pointer) { return; }
    var direction = pointer.y < edge ? -1 : pointer.y > innerHeight - edge ? 1 : 0;
    var before = document.scrollingElement.scrollTop;
    document.scrollingElement.scrollTop = before + direction * step;
    var at = pointer;
    pointer = null;
    if (document.scrollingElement.scrollTop != before) { markGap(at.x, at.y); }
  }

  return { markGap: markGap, clear: clear, take: take };
})();
