// The page: loads the library, then sets up the tabs and the four views.
// Nothing here writes to the console, the address, storage or cookies:
// what is entered may hold passwords and card numbers.
'use strict';

(() => {
  const $ = (id) => document.getElementById(id);

  // Tabs: one panel shown; arrow keys, Home and End move between tabs.
  function setUpTabs() {
    const tabs = [...document.querySelectorAll('[role="tab"]')];
    const choose = (tab) => {
      for (const each of tabs) {
        const chosen = each === tab;
        each.setAttribute('aria-selected', String(chosen));
        each.tabIndex = chosen ? 0 : -1;
        $(each.getAttribute('aria-controls')).hidden = !chosen;
      }
    };
    for (const tab of tabs) {
      tab.addEventListener('click', () => choose(tab));
      tab.addEventListener('keydown', (event) => {
        const at = tabs.indexOf(tab);
        const moves = { ArrowRight: at + 1, ArrowLeft: at - 1, Home: 0, End: tabs.length - 1 };
        if (event.key in moves) {
          event.preventDefault();
          const next = tabs[(moves[event.key] + tabs.length) % tabs.length];
          choose(next);
          next.focus();
        }
      });
    }
  }

  async function start() {
    const status = $('load-status');
    try {
      const pq = await pqutilsLoad(pqutilsWasmBase64);
      setUpTabs();
      setUpDecodeView(pq);
      setUpBuildView(pq);
      setUpCheckViews(pq);
      status.textContent = 'Ready.';
      document.body.dataset.ready = 'true';
    } catch (error) {
      status.textContent = `The library did not load: ${error.message}`;
      status.className = 'error';
    }
  }

  if (document.readyState === 'loading') {
    document.addEventListener('DOMContentLoaded', start);
  } else {
    start();
  }
})();
