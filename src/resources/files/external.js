// What the program adds to its pages: "window.external" in a page, and in the frame around the pages the change from
// one page to the next. %methods% stands for the names of the methods.
(function () {
  if (window === window.top) {
    window.viewShell = makeShell();
  } else if (window.parent === window.top && /^\/~page\/\d+\//.test(location.pathname)) {
    Object.defineProperty(window, "external", { value: makeExternal(parseInt(location.pathname.split("/")[2], 10)) });
  }

  // Names are found without regard to case; a name that is none is undefined, so that calling it fails in the page.
  function makeExternal(revision) {
    var methods = new Map();
    var shell = window.top.viewShell;
    %methods%.forEach(function (name) {
      methods.set(name.toLowerCase(), function () { shell.call(revision, name, Array.from(arguments)); });
    });
    return new Proxy({}, {
      get: function (target, name) { return typeof name == "string" ? methods.get(name.toLowerCase()) : undefined; },
      has: function (target, name) { return typeof name == "string" && methods.has(name.toLowerCase()); },
      set: function () { return true; }
    });
  }

  function makeShell() {
    // Nobody clicks faster than this; a script that does has no more than these many calls under way.
    var limit = 64;
    var underway = 0;
    var bridge = null;
    var waiting = [];
    var current = null; // the frame of the page on the screen
    var next = null;    // that of the page on its way

    new QWebChannel(qt.webChannelTransport, function (channel) {
      bridge = channel.objects.bridge;
      waiting.forEach(function (work) { work(); });
      waiting = [];
    });
    function withBridge(work) { if (bridge) { work(); } else { waiting.push(work); } }

    function call(revision, method, values) {
      if (underway >= limit) { return; }
      ++underway;
      // A missing value is not nothing: an empty list stands for it.
      var scalars = values.map(function (value) {
        if (value === undefined) { return []; }
        return /^(string|number|boolean)$/.test(typeof value) ? value : null;
      });
      withBridge(function () { bridge.call(revision, method, scalars, function () { --underway; }); });
    }

    function load(address, revision, keepsPlace) {
      if (next) { next.remove(); }
      var frame = document.createElement("iframe");
      next = frame;
      frame.className = current ? "next" : "";
      var ready = function () { present(frame, revision, keepsPlace); };
      frame.addEventListener("load", ready, { once: true });
      setTimeout(ready, 4000); // a page that never finishes loading is shown as far as it is
      frame.src = address;
      document.body.append(frame);
    }

    function present(frame, revision, keepsPlace) {
      if (frame !== next || frame.presented) { return; }
      frame.presented = true;
      var places = keepsPlace && current ? scrollPlaces(current.contentDocument) : [];
      scrollTo(frame.contentDocument, places);
      // A page that fills in only what is near the window does it now, not at the next frame.
      frame.contentWindow.dispatchEvent(new Event("scroll"));
      Promise.race([decoded(frame), new Promise(function (done) { setTimeout(done, 1500); })]).then(function () {
        if (frame !== next) { return; }
        // Once more: the old page may have been scrolled meanwhile.
        scrollTo(frame.contentDocument, keepsPlace && current ? scrollPlaces(current.contentDocument) : []);
        replaceCurrent(frame);
        withBridge(function () { bridge.shown(revision); });
      });
    }

    function replaceCurrent(frame) {
      var old = current;
      // Also while the program has a menu open over the page: the keyboard comes back to it.
      var hasKeyboard = document.hasFocus() || (old && document.activeElement === old);
      var link = old && hasKeyboard ? linkByKeyboard(old.contentDocument) : null;
      current = frame;
      next = null;
      frame.className = "";
      if (old) { old.remove(); }
      if (hasKeyboard) { frame.contentWindow.focus(); }
      if (link) { focusLink(frame.contentDocument, link); }
    }

    // A person who goes by keyboard goes on where they were: at the link to the same place.
    function linkByKeyboard(page) {
      var focused = page.activeElement;
      return focused && focused.matches("a[href]:focus-visible") ? focused.getAttribute("href") : null;
    }

    function focusLink(page, address) {
      var link = Array.from(page.links).find(function (a) { return a.getAttribute("href") == address; });
      if (link) { link.focus({ preventScroll: true }); }
    }

    // The pictures that will be seen at once, and the letters.
    function decoded(frame) {
      var height = frame.clientHeight;
      var pictures = Array.from(frame.contentDocument.images).filter(function (picture) {
        picture.decoding = "sync";
        var rect = picture.getBoundingClientRect();
        return rect.bottom > 0 && rect.top < height && rect.width > 0;
      });
      return Promise.all(pictures.map(function (picture) { return picture.decode().catch(function () {}); })
        .concat(frame.contentDocument.fonts.ready));
    }

    // Each scrolled element by the way to it from the root.
    function scrollPlaces(page) {
      var places = [];
      page.querySelectorAll("*").forEach(function (element) {
        if (element.scrollTop || element.scrollLeft) {
          places.push({ way: wayTo(element), left: element.scrollLeft, top: element.scrollTop });
        }
      });
      return places;
    }

    function wayTo(element) {
      var way = [];
      for (var e = element; e.parentElement; e = e.parentElement) {
        way.unshift(Array.prototype.indexOf.call(e.parentElement.children, e));
      }
      return way;
    }

    function scrollTo(page, places) {
      places.forEach(function (place) {
        var element = place.way.reduce(function (e, child) { return e && e.children[child]; }, page.documentElement);
        if (element) { element.scrollTo({ left: place.left, top: place.top, behavior: "instant" }); }
      });
    }

    function evaluate(expression) { return current ? current.contentWindow.eval(expression) : undefined; }

    return { call: call, load: load, evaluate: evaluate };
  }
})();
