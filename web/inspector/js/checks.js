// The Password and Card views: the library's checks, in the words of
// `pqorder password` and `pqorder card`. The password is read from its field
// when it changes and kept nowhere else.
'use strict';

function setUpCheckViews(pq) {
  const $ = (id) => document.getElementById(id);

  // The policy's limits: the option names of `pqorder password`, and the
  // names the package takes.
  const kLimits = ['length', 'digits', 'letters', 'special', 'lower', 'upper'].flatMap((what) =>
    ['min', 'max'].map((bound) => ({
      option: `${bound}-${what}`,
      name: `${bound}${what[0].toUpperCase()}${what.slice(1)}`,
    })),
  );

  const policy = $('policy');
  for (const { option, name } of kLimits) {
    const label = document.createElement('label');
    label.htmlFor = `policy-${option}`;
    label.textContent = `--${option}`;
    const input = document.createElement('input');
    input.type = 'number';
    input.step = '1';
    input.id = `policy-${option}`;
    input.dataset.limit = name;
    const pair = document.createElement('span');
    pair.className = 'limit';
    pair.append(label, input);
    policy.append(pair);
  }
  {
    const label = document.createElement('label');
    label.htmlFor = 'policy-forbid';
    label.textContent = '--forbid';
    const input = document.createElement('input');
    input.id = 'policy-forbid';
    input.autocomplete = 'off';
    input.spellcheck = false;
    const pair = document.createElement('span');
    pair.className = 'limit';
    pair.append(label, input);
    policy.append(pair);
  }

  function checkPassword() {
    const report = $('password-report');
    const limits = {};
    for (const input of policy.querySelectorAll('input[data-limit]')) {
      if (input.value !== '') {
        limits[input.dataset.limit] = Number(input.value);
      }
    }
    const forbid = $('policy-forbid').value;
    if (forbid !== '') {
      limits.forbid = forbid;
    }
    try {
      const { valid, broken, holds } = pq.checkPassword($('password').value, limits);
      report.textContent =
        `${valid ? 'valid' : 'invalid'}\n` +
        broken.map((words) => `  ${words}\n`).join('') +
        `holds  ${holds.length === 0 ? 'nothing' : holds.join(', ')}\n`;
    } catch (error) {
      report.textContent = error.message;
    }
  }
  $('panel-password').addEventListener('input', checkPassword);
  // The form is never sent anywhere (Enter would send it to this address).
  $('password-form').addEventListener('submit', (event) => event.preventDefault());
  checkPassword();

  function checkCard() {
    const number = $('card-number').value;
    const report = $('card-report');
    if (number === '') {
      report.textContent = 'luhn    invalid (no number)\n';
      return;
    }
    const { luhn, brandWords, masked } = pq.checkCard(number);
    report.textContent = `luhn    ${luhn ? 'valid' : 'invalid'}\n` + `brand   ${brandWords}\n` + `masked  ${masked}\n`;
  }
  $('card-number').addEventListener('input', checkCard);
  checkCard();
}
