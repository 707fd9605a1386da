// The rows of a folder's page. They stand in blocks: table sections with a template that holds the rows. Only the
// blocks near the window are filled, so that a folder of thousands of pictures is scrolled without waiting for any of
// them, and only the pictures near the window are in memory.
var folderList = (function () {
  var fillReach = 2;   // heights of the window, above and below it, within which blocks are filled
  var emptyReach = 3;  // and beyond which they are emptied
  var rowHeight = 0;   // in pixels, at the present width
  var blocks = Array.from(document.querySelectorAll("tbody.block"));

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

  // Not by an IntersectionObserver: it sees nothing of what is scrolled past without a stop. All places are read
  // before anything is changed.
  function update() {
    var distances = blocks.map(function (block) {
      var rect = block.getBoundingClientRect();
      return Math.max(-rect.bottom, rect.top - innerHeight, 0);
    });
    distances.forEach(function (distance, i) {
      if (distance <= fillReach * innerHeight) { fill(blocks[i]); }
      if (distance > emptyReach * innerHeight) { empty(blocks[i]); }
    });
  }

  function prepare(block) {
    addGap(block);
    if (!rowHeight) {
      fill(block);
      measure();
    }
  }

  // rows: the HTML of further rows, for each block.
  function append(rows) {
    rows.forEach(function (html) {
      var block = document.createElement("tbody");
      block.className = "block";
      block.innerHTML = "<template>" + html + "</template>";
      document.getElementById("end").before(block);
      blocks.push(block);
      prepare(block);
    });
    update();
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
    update();
  }

  function hideAll() {
    blocks.forEach(function (block) { block.remove(); });
    blocks = [];
  }

  blocks.forEach(prepare);
  update();
  window.addEventListener("scroll", update);
  window.addEventListener("resize", function () {
    measure();
    update();
  });

  return { append: append, setCount: setCount, hide: hide, hideAll: hideAll };
})();
