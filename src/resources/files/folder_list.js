// The rows of a folder's page. They stand in blocks: table sections with a template that holds the rows. Only the
// blocks near the window are filled, so that a folder of thousands of pictures is scrolled without waiting for any of
// them, and only the pictures near the window are in memory.
var folderList = (function () {
  var reach = 2;       // heights of the window, above and below it, within which blocks are filled
  var rowHeight = 0;   // in pixels, at the present width
  var blocks = Array.from(document.querySelectorAll("tbody.block"));
  var watcher = new IntersectionObserver(function (entries) {
    entries.forEach(function (entry) { if (entry.isIntersecting) { fill(entry.target); } else { empty(entry.target); } });
  }, { rootMargin: reach * 100 + "% 0px" });

  function rowsOf(block) { return block.querySelector("template").content; }
  function isFilled(block) { return !block.querySelector(".gap") }

  function fill(block) {
    var gap = block.querySelector(".gap");
    if (gap) { gap.replaceWith(rowsOf(block).cloneNode(true)); }
  }

  function empty(block) {
    if (!isFilled(block)) { return; }
    Array.from(block.rows).forEach(function (row) {
      if (row.style.display == "none") { forget(block, row.id); }
      row.remove();
    });
    addGap(block);
  }

  function addGap(block) {
    block.insertAdjacentHTML("beforeend", '<tr class="gap"><td colspan="2"></td></tr>');
    setGapHeight(block);
  }

  function setGapHeight(block) {
    var gap = block.querySelector(".gap");
    if (gap) { gap.style.height = rowsOf(block).childElementCount * rowHeight + "px"; }
  }

  // A row that has gone does not come back when its block is filled again.
  function forget(block, id) {
    var row = id && rowsOf(block).getElementById(id);
    if (row) { row.remove(); }
  }

  function measure() {
    var row = Array.from(document.querySelectorAll("tbody.block > tr:not(.gap)")).find(function (r) {
      return r.style.display != "none";
    });
    if (row) { rowHeight = row.getBoundingClientRect().height; }
    blocks.forEach(setGapHeight);
  }

  // At once, for what is scrolled to before the page is shown.
  function fillNear() {
    blocks.filter(function (block) {
      var rect = block.getBoundingClientRect();
      return rect.bottom > -innerHeight && rect.top < 2 * innerHeight;
    }).forEach(fill);
  }

  function watch(block) {
    addGap(block);
    if (!rowHeight) {
      fill(block);
      measure();
    }
    watcher.observe(block);
  }

  // rows: the HTML of further rows.
  function append(rows) {
    var block = document.createElement("tbody");
    block.className = "block";
    block.innerHTML = "<template>" + rows + "</template>";
    document.getElementById("end").before(block);
    blocks.push(block);
    watch(block);
  }

  function setCount(count) { document.getElementById("count").textContent = count; }

  // ids: of the pictures whose rows go.
  function hide(ids) {
    ids.forEach(function (id) {
      var row = document.getElementById(id + "_row");
      if (row) { row.style.display = "none"; }
      blocks.forEach(function (block) { forget(block, id + "_row"); });
    });
    blocks.forEach(setGapHeight);
  }

  function hideAll() {
    blocks.forEach(function (block) {
      watcher.unobserve(block);
      block.remove();
    });
    blocks = [];
  }

  blocks.forEach(watch);
  fillNear();
  window.addEventListener("scroll", fillNear);
  window.addEventListener("resize", measure);

  return { append: append, setCount: setCount, hide: hide, hideAll: hideAll };
})();
