// What the program does with the page of galleries on the screen.
window.galleriesView = (function () {
  function cover(gallery) { return document.querySelector('img[id="gl_' + gallery + '"]'); }

  // The frame of a cover is drawn by the table; what lies inside of it belongs to the cover.
  function coverAt(x, y) {
    var element = document.elementFromPoint(x, y);
    var frame = element ? element.closest("td[colspan]") : null;
    return frame ? frame.querySelector('a[href^="gl_"] > img') : null;
  }

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

  // Lights the cover under the place, and no other. Returns its gallery, or "" beside the covers.
  function light(x, y) {
    var lit = coverAt(x, y);
    document.querySelectorAll("img.drop-lit").forEach(function (image) {
      if (image !== lit) { image.classList.remove("drop-lit"); }
    });
    if (lit) { lit.classList.add("drop-lit"); }
    return lit ? lit.id.substring(3) : "";
  }

  // A cover can't be taken away with the mouse; it is no picture of the galleries.
  document.addEventListener("dragstart", function (event) { event.preventDefault(); });

  return { name: name, replace: replace, light: light };
})();
