"use strict";
(() => {
  const root = document.documentElement;

  // The theme: of the system, light or dark. A browser that forbids a page to remember it has that of the system.
  const THEMES = ["system", "light", "dark"];
  const remembered = () => {
    try {
      const theme = localStorage.getItem("theme");
      return THEMES.includes(theme) ? theme : "system";
    } catch {
      return "system";
    }
  };
  const remember = (theme) => {
    try {
      localStorage.setItem("theme", theme);
    } catch {
      // it lasts as long as the page
    }
  };
  let theme = remembered();
  const showTheme = () => {
    root.dataset.theme = theme;
    const button = document.getElementById("theme");
    if (button) {
      button.textContent = `Theme: ${theme}`;
    }
  };
  showTheme(); // before anything is painted

  const followTheme = () => {
    document.getElementById("theme").addEventListener("click", () => {
      theme = THEMES[(THEMES.indexOf(theme) + 1) % THEMES.length];
      remember(theme);
      showTheme();
    });
    showTheme();
  };

  // Tables: the head of a column sorts by it, first upwards, of numbers downwards.
  const sortable = (table) => {
    const heads = [...table.tHead.rows[0].cells];
    const body = table.tBodies[0];
    const valueOf = (row, column, isNumber) => {
      const cell = row.cells[column];
      const text = cell.dataset.value ?? cell.textContent.trim();
      return isNumber ? Number(text.replace("?", "-1")) : text;
    };
    heads.forEach((head, column) => {
      const isNumber = head.dataset.sort === "number" || head.classList.contains("number");
      const button = document.createElement("button");
      button.type = "button";
      button.append(...head.childNodes);
      head.append(button);
      button.addEventListener("click", () => {
        const current = head.getAttribute("aria-sort");
        const isDown = current ? current === "ascending" : isNumber;
        heads.forEach((each) => each.removeAttribute("aria-sort"));
        head.setAttribute("aria-sort", isDown ? "descending" : "ascending");
        const rows = [...body.rows].map((row) => ({ row, value: valueOf(row, column, isNumber) }));
        const order = (a, b) => (a.value < b.value ? -1 : a.value > b.value ? 1 : 0);
        rows.sort((a, b) => (isDown ? order(b, a) : order(a, b)));
        body.append(...rows.map(({ row }) => row));
      });
    });
  };

  // The filter: of rows, declarations and outlines those are left that have the words; what is folded opens.
  const filter = () => {
    const input = document.getElementById("search");
    const found = document.getElementById("found");
    const items = [...document.querySelectorAll("table.filtered tbody tr, .declaration.filtered, .outline .filtered")];
    const texts = items.map((item) => {
      const named = item.matches(".declaration") ? item.querySelectorAll("h3, .citation code") : [item];
      return [...named].map((part) => part.textContent).join(" ").toLowerCase();
    });
    const outlines = [...document.querySelectorAll("details.outline")];
    input.addEventListener("input", () => {
      const words = input.value.toLowerCase().split(/\s+/).filter(Boolean);
      let count = 0;
      items.forEach((item, at) => {
        const path = item.closest("details.outline")?.querySelector("summary").textContent.toLowerCase() ?? "";
        const isLeft = words.every((word) => texts[at].includes(word) || path.includes(word));
        item.classList.toggle("left-out", !isLeft);
        count += isLeft ? 1 : 0;
      });
      outlines.forEach((outline) => {
        const isLeft = outline.querySelector(".filtered:not(.left-out)") !== null;
        outline.classList.toggle("left-out", words.length > 0 && !isLeft);
        outline.open = words.length > 0 && isLeft;
      });
      found.textContent = words.length > 0 ? `${count} found` : "";
    });
    document.addEventListener("keydown", (event) => {
      const isTyping = event.target.matches("input, textarea");
      if (event.key === "/" && !isTyping && !event.ctrlKey && !event.metaKey && !event.altKey) {
        event.preventDefault();
        input.focus();
      }
    });
    input.addEventListener("keydown", (event) => {
      if (event.key === "Escape" && input.value) {
        input.value = "";
        input.dispatchEvent(new Event("input"));
      }
    });
  };

  // The picture: a node that is pointed at or focused shows its arrows alone.
  const picture = (drawing) => {
    const arrows = [...drawing.querySelectorAll(".arrow")];
    const nodes = [...drawing.querySelectorAll(".node")];
    const show = (node) => {
      const name = node?.dataset.node;
      const lit = new Set([name]);
      arrows.forEach((arrow) => {
        const { from, to } = arrow.dataset;
        const isOfNode = name !== undefined && (from === name || to === name);
        arrow.classList.toggle("lit", isOfNode);
        if (isOfNode) {
          lit.add(from).add(to);
        }
      });
      nodes.forEach((each) => each.classList.toggle("lit", name !== undefined && lit.has(each.dataset.node)));
      drawing.classList.toggle("lit", name !== undefined);
    };
    const focused = () => nodes.find((node) => node === document.activeElement);
    nodes.forEach((node) => {
      node.addEventListener("pointerenter", () => show(node));
      node.addEventListener("pointerleave", () => show(focused()));
      node.addEventListener("focus", () => show(node));
      node.addEventListener("blur", () => show(undefined));
    });
  };

  // Buttons and the numbers of lines in outlines copy a citation.
  const copying = (element) => {
    const outline = element.closest("details.outline");
    const citation = element.dataset.citation ?? outline.dataset.path + element.dataset.lines;
    element.title = `Copy ${citation}`;
    element.addEventListener("click", async (event) => {
      event.preventDefault();
      try {
        await navigator.clipboard.writeText(citation);
      } catch {
        // where the page may not write to the clipboard, the text is selected for whoever copies it
        getSelection().selectAllChildren(element.parentElement.querySelector("code"));
        return;
      }
      element.classList.add("copied");
      setTimeout(() => element.classList.remove("copied"), 1500);
    });
  };

  // Whatever is folded opens for a link that leads into it, and on paper.
  const unfold = () => {
    const reveal = () => {
      const target = document.getElementById(location.hash.slice(1));
      const folded = target?.closest("details:not([open])");
      if (folded) {
        folded.open = true;
        target.scrollIntoView();
      }
    };
    addEventListener("hashchange", reveal);
    reveal();
    let opened = [];
    addEventListener("beforeprint", () => {
      opened = [...document.querySelectorAll("details:not([open])")];
      opened.forEach((details) => (details.open = true));
    });
    addEventListener("afterprint", () => opened.forEach((details) => (details.open = false)));
  };

  document.addEventListener("DOMContentLoaded", () => {
    document.querySelectorAll(".tools, .copy").forEach((tool) => (tool.hidden = false));
    followTheme();
    document.querySelectorAll("table.sortable").forEach(sortable);
    filter();
    document.querySelectorAll("svg.picture").forEach(picture);
    document.querySelectorAll(".copy, .line[data-lines]").forEach(copying);
    unfold();
  });
})();
