// What the program does with the page of galleries on the screen.
window.galleriesView = (function () {
  var line = null; // where a dragged gallery would fall

  function cover(gallery) { return document.querySelector('img[id="gl_' + gallery + '"]'); }
  function galleryOf(image) { return image.id.substring(3); }

  // The frame of a cover is drawn by the table; what lies inside of it belongs to the cover.
  function coverAt(x, y) {
    var element = document.elementFromPoint(x, y);
    var frame = element ? element.closest("td[colspan]") : null;
    return frame ? frame.querySelector('a[href^="gl_"] > img') : null;
  }

  function frameOf(image) { return image.closest("td[colspan]").getBoundingClientRect(); }

  // entries: [gallery, name, whether it is the current one].
  function name(entries) {
    entries.forEach(function (entry) {
      var image = cover(entry[0]);
      if (!image) { return; }
      image.alt = image.title = entry[1];
      if (entry[2]) { image.parentElement.setAttribute("aria-current", "true"); }
    });
  }

  // The old picture stays on the screen until the new one is there.
  function replace(gallery, address) {
    var image = cover(gallery);
    if (image) { image.src = address; }
  }

  // Of a cover: the left edge and the width of its frame, and its own lower edge. Null if it isn't there.
  function placeOf(gallery) {
    var image = cover(gallery);
    if (!image) { return null; }
    var frame = frameOf(image);
    return [frame.left, frame.width, image.getBoundingClientRect().bottom];
  }

  // --- Drags over the page.

  function setLit(lit) {
    document.querySelectorAll("img.drop-lit").forEach(function (image) {
      if (image !== lit) { image.classList.remove("drop-lit"); }
    });
    if (lit) { lit.classList.add("drop-lit"); }
  }

  // x: the middle of the line.
  function setLine(x, rect) {
    if (!line) {
      line = document.createElement("div");
      line.id = "galleries_drop_line";
      document.documentElement.appendChild(line);
    }
    line.style.cssText = "all:initial;position:fixed;z-index:2147483647;pointer-events:none;width:4px;" +
      "background:#005afa;border-radius:2px;box-shadow:0 0 0 1px #fff,0 1px 4px rgba(0,0,0,.5);" +
      "left:" + (x - 2) + "px;top:" + rect.top + "px;height:" + rect.height + "px;";
  }

  function clear() {
    setLit(null);
    if (line) { line.remove(); }
    line = null;
  }

  // Lights the cover under the place, and no other. Returns its gallery, or "" beside the covers and over one that is
  // barred: galleries that take nothing.
  function light(x, y, barred) {
    var lit = coverAt(x, y);
    if (lit && barred.indexOf(Number(galleryOf(lit))) >= 0) { lit = null; }
    setLit(lit);
    return lit ? galleryOf(lit) : "";
  }

  // Shows where a gallery would fall. takers: the galleries that can take it, and which of them it can stand beside.
  // "5 before" and "5 after": beside gallery 5; "5 inside": below it; "": nowhere.
  function mark(x, y, takers) {
    var image = coverAt(x, y);
    clear();
    if (!image || takers.inside.indexOf(Number(galleryOf(image))) < 0) { return ""; }
    var rect = frameOf(image);
    var way = takers.beside.indexOf(Number(galleryOf(image))) < 0 ? "inside" :
      x < rect.left + rect.width / 4 ? "before" : x >= rect.right - rect.width / 4 ? "after" : "inside";
    // In the middle between two frames.
    if (way == "inside") { setLit(image); } else { setLine(way == "before" ? rect.left - 9 : rect.right + 9, rect); }
    return galleryOf(image) + " " + way;
  }

  // While a cover is dragged or has its menu, its strip of buttons is in the way.
  function closeStrip(image) {
    var strip = previewStrips.groupOfObject(image);
    if (strip) { previewStrips.leave(strip); }
  }

  // The program drags the gallery itself.
  document.addEventListener("dragstart", function (event) {
    event.preventDefault();
    var link = event.target instanceof Element ? event.target.closest('a[href^="gl_"]') : null;
    if (!link) { return; }
    closeStrip(link.querySelector("img"));
    window.external.DragGallery(link.getAttribute("href").substring(3));
  });

  // --- The menu of a cover.

  function focusedCover() {
    var focused = document.activeElement;
    return focused && focused.matches('a[href^="gl_"]') ? focused.querySelector("img") : null;
  }

  // In place of the strip of buttons, which the menu key opens over pictures.
  window.addEventListener("keydown", function (event) {
    var isMenuKey = event.key == "ContextMenu" || (event.key == "F10" && event.shiftKey);
    var image = isMenuKey ? focusedCover() : null;
    if (!image) { return; }
    event.preventDefault();
    event.stopImmediatePropagation();
    closeStrip(image);
    var rect = image.getBoundingClientRect();
    window.external.OpenMenu(galleryOf(image), rect.left + rect.width / 2, rect.top + rect.height / 2);
  }, true);

  document.addEventListener("contextmenu", function (event) {
    event.preventDefault();
    var image = coverAt(event.clientX, event.clientY);
    if (!image) { return; }
    closeStrip(image);
    window.external.OpenMenu(galleryOf(image), event.clientX, event.clientY);
  });

  return { name: name, replace: replace, placeOf: placeOf, light: light, mark: mark, clear: clear };
})();
