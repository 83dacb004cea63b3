// Makes the pages under test: runs of the real command on copies of the samples.

import { spawnSync } from 'node:child_process';
import { chmodSync, cpSync, mkdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';

// A name that would be markup, were it not quoted.
export const hostileName = '<img src=x onerror=alert(1)> & "Co"\u202E\u0007.lst';

// A file that has a report's header and cannot be read: it begins with a byte-order mark.
const unreadableReport =
  '\uFEFF[UserSection]\r\nVersion=3\r\nReferenzbeleg=Rechnung\r\n[Layout]\r\nCopies=1\r\n';

// Pictures show this folder in place of wherever the tests ran.
const shownFolder = '/srv/berichte';

export function makePages(tessary, samples, folder) {
  rmSync(folder, { recursive: true, force: true });
  mkdirSync(join(folder, 'Differenzen'), { recursive: true });
  cpSync(join(samples, 'hersteller'), join(folder, 'hersteller'), { recursive: true });
  for (const customer of ['gut', 'kunde', 'angriff']) {
    cpSync(join(samples, 'kunde'), join(folder, customer), { recursive: true });
  }

  const run = (page, ...words) => {
    const path = join(folder, page);
    const result = spawnSync(tessary, [...words, '--html', path], { cwd: folder, encoding: 'utf8' });
    if (result.error) throw result.error;
    const shown = join(folder, 'bild-' + page);
    writeFileSync(shown, readFileSync(path, 'utf8').replaceAll(folder, shownFolder));
    return { path, shown, exitCode: result.status, output: result.stdout };
  };
  const reports = (customer) => join(folder, customer, 'Berichte');
  const convert = (page, customer, ...words) =>
    run(page, 'convert-folder', 'Differenzen', `${customer}/Berichte`, ...words);

  const compared = run('vergleich.html', 'diff-folder', 'hersteller/version3',
    'hersteller/version4', 'Differenzen');
  run('vergleich-2.html', 'diff-folder', 'hersteller/version4', 'hersteller/version5',
    'Differenzen');
  const notCompared = run('vergleich-fehler.html', 'diff', 'hersteller/version4/Rechnung.lst',
    'hersteller/version3/Rechnung.lst', 'Differenzen');

  const converted = convert('erfolg.html', 'gut');

  writeFileSync(join(reports('kunde'), 'Mahnung.lst'), unreadableReport);
  chmodSync(join(reports('kunde'), 'Rechnung Österreich.lst'), 0o444);
  const notConverted = convert('fehler.html', 'kunde', '--omit', 'Angebot alt.lst', '--omit',
    'Preisliste.lst');

  writeFileSync(join(reports('angriff'), hostileName), unreadableReport);
  const hostile = convert('angriff.html', 'angriff');

  return { compared, notCompared, converted, notConverted, hostile };
}
