// The search field of the pages, and their list of sections. The index, [address, page, heading, text] for each section, is a script too, as browsers
// fetch nothing else from the file system. It is loaded when the field first gets the focus.
(function () {
    "use strict";
    const most = 12;
    const field = document.createElement("input");
    field.type = "search";
    field.placeholder = "Search";
    field.setAttribute("aria-label", "Search the documentation");
    const list = document.createElement("ul");
    list.className = "results";
    list.hidden = true;
    const box = document.createElement("div");
    box.className = "search";
    box.append(field, list);
    document.querySelector(".breadcrumb").after(box);

    // The list of sections is open where it stands beside the text.
    const contents = document.querySelector("details.toc");
    if (contents)
        contents.open = matchMedia("(min-width: 76rem)").matches;

    function load() {
        if (window.searchIndex || document.getElementById("search-index"))
            return;
        const script = document.createElement("script");
        script.id = "search-index";
        script.src = "search-index.js";
        script.onload = show;
        document.head.append(script);
    }

    // How well a section matches: 0 if a word is missing, most for a whole title. A class comes before what names it.
    function rank([, page, heading, text], words) {
        let sum = 0;
        for (const word of words) {
            const title = (heading || page).toLowerCase();
            if (title === word || title === word + " class")
                sum += 100;
            else if (title.startsWith(word))
                sum += 40;
            else if (title.includes(word))
                sum += 20;
            else if (page.toLowerCase().includes(word))
                sum += 5;
            else if (text.toLowerCase().includes(word))
                sum += 1;
            else
                return 0;
        }
        return heading ? sum : sum + 10;
    }

    function excerpt(text, word) {
        const at = Math.max(0, text.toLowerCase().indexOf(word));
        const from = Math.max(0, text.lastIndexOf(" ", Math.max(0, at - 30)));
        return (from > 0 ? "… " : "") + text.slice(from, from + 120).trim();
    }

    function element(name, text) {
        const made = document.createElement(name);
        made.textContent = text;
        return made;
    }

    function show() {
        const words = field.value.toLowerCase().split(/\s+/).filter(Boolean);
        list.replaceChildren();
        list.hidden = !words.length || !window.searchIndex;
        if (list.hidden)
            return;
        const found = window.searchIndex.map(section => [rank(section, words), section])
            .filter(([points]) => points > 0).sort((a, b) => b[0] - a[0]).slice(0, most);
        for (const [, [address, page, heading, text]] of found) {
            const link = element("a", "");
            link.href = address;
            link.append(element("strong", heading || page), element("small", heading ? page : ""),
                        element("span", excerpt(text, words[0])));
            const item = document.createElement("li");
            item.append(link);
            list.append(item);
        }
        if (!found.length)
            list.append(element("li", "Nothing matches “" + field.value.trim() + "”"));
    }

    function move(step) {
        const stops = [field, ...list.querySelectorAll("a")];
        const next = stops[stops.indexOf(document.activeElement) + step];
        if (next)
            next.focus();
    }

    field.addEventListener("focus", load);
    field.addEventListener("input", show);
    box.addEventListener("keydown", event => {
        if (event.key === "ArrowDown" || event.key === "ArrowUp") {
            move(event.key === "ArrowDown" ? 1 : -1);
            event.preventDefault();
        } else if (event.key === "Enter" && event.target === field && list.querySelector("a")) {
            list.querySelector("a").click();
        } else if (event.key === "Escape") {
            field.value = "";
            show();
            field.focus();
        }
    });
    // A result on the same page leads away from the list, too.
    list.addEventListener("click", () => { list.hidden = true; });
    document.addEventListener("click", event => { if (!box.contains(event.target)) list.hidden = true; });
    document.addEventListener("keydown", event => {
        if (event.key === "/" && event.target === document.body) {
            field.focus();
            event.preventDefault();
        }
    });
})();
