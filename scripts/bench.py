"""Measures what is built in build/release and build/none; see bench.sh.

A row is one figure of ours and one of a peer, taken in turn, and their ratio: the median of the
ratios of all pairs. A limit is held, or not; rows without one are shown only.
"""
import json
import os
import random
import shutil
import socket
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from curves import chart

ROOT = Path(__file__).resolve().parent.parent
RELEASE = ROOT / 'build/release'
TOOL = str(RELEASE / 'tools/morvelune/morvelune')
MEASURE = str(RELEASE / 'bench/measure')
PARSE = str(RELEASE / 'bench/parse_lines')
OUT = ROOT / 'build/bench'
MEGABYTE = 1_000_000
FOUND = (0, 3)  # what inspect ends with when it could read all; 3 says that it found errors
PNG = b'\x89PNG\r\n\x1a\n'


class Table:
    """The rows, and whether their limits are held."""

    def __init__(self):
        self.rows = []

    def add(self, what, here, beside, value, shown, limit=None, unit=''):
        """`value`, as `shown`, is at most `limit`, which is None for a row that is shown only.
        A `value` of None says that it could not be measured."""
        verdict = 'shown'
        if limit is not None:
            verdict = 'held' if value is not None and value <= limit else '**not held**'
        bound = '' if limit is None else f'at most {limit:g}{unit}'
        self.rows.append((what, here, beside, shown, bound, verdict))
        print(f'  {what}: {here}; {beside}; {shown} {bound} {verdict}', file=sys.stderr)

    def text(self):
        head = [('what', 'here', 'beside it', 'figure', 'limit', ''), ('---',) * 6]
        return ''.join('| ' + ' | '.join(row) + ' |\n' for row in head + self.rows)


class Run:
    """One run of a command: seconds on the clock and of the processor, and peak bytes."""

    def __init__(self, command, source=os.devnull, processors=None):
        before = os.sched_getaffinity(0)
        os.sched_setaffinity(0, processors or before)
        with open(source, 'rb') as given:
            ran = subprocess.run([MEASURE, *command], stdin=given, stdout=subprocess.PIPE, text=True,
                                 check=True)
        os.sched_setaffinity(0, before)
        wall, cpu, peak, status = ran.stdout.split()
        self.wall, self.cpu, self.peak = float(wall), float(cpu), int(peak)
        self.status = int(status)


def pairs(count, ours, peer, statuses=(0,)):
    """Runs the two in turn, after one pair that does not count. Ours ends with one of `statuses`."""
    made = [(ours(), peer()) for _ in range(count + 1)][1:]
    if any(one.status not in statuses or other.status not in (0, *statuses) for one, other in made):
        sys.exit('a command that is measured failed')
    return made


def compared(made, figure):
    """The medians of ours, of the peer's, and of their ratios."""
    ours = [getattr(one, figure) for one, _ in made]
    peers = [getattr(other, figure) for _, other in made]
    ratios = [one / other for one, other in zip(ours, peers)]
    return tuple(statistics.median(each) for each in (ours, peers, ratios))


class Origin:
    """nginx on the loopback interface, which serves a folder."""

    def __init__(self, folder):
        with socket.socket() as probe:
            probe.bind(('127.0.0.1', 0))
            self.address = '127.0.0.1:%d' % probe.getsockname()[1]
        folder.mkdir(mode=0o755)
        self.folder = folder / 'www'
        self.folder.mkdir()
        paths = ''.join(f'{name}_temp_path {folder}/{name};'
                        for name in ('client_body', 'proxy', 'fastcgi', 'uwsgi', 'scgi'))
        (folder / 'conf').write_text(
            f'worker_processes 1; daemon off; pid {folder}/pid; events {{ worker_connections 2048; }}'
            f'http {{ access_log off; sendfile on; {paths}'
            f'server {{ listen {self.address}; root {self.folder}; }} }}')
        self.command = ['nginx', '-e', str(folder / 'log'), '-c', str(folder / 'conf')]

    def __enter__(self):
        self.process = subprocess.Popen(self.command)
        host, port = self.address.split(':')
        for _ in range(100):
            with socket.socket() as probe:
                if probe.connect_ex((host, int(port))) == 0:
                    return self
            time.sleep(0.05)
        sys.exit('nginx does not start')

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()


class Deliveries:
    """Deliveries of a number of files of a size, beside curl, which gets the same files."""

    def __init__(self, work):
        self.work = work
        self.origin = Origin(work / 'origin')

    def measure(self, count, size, rounds, more=()):
        """`more` is what curl is told beside."""
        (self.origin.folder / f'{size}.png').write_bytes(PNG + os.urandom(size - len(PNG)))
        urls = [f'http://{self.origin.address}/{size}.png?{i}' for i in range(count)]
        push = self.work / 'push.json'
        push.write_text(json.dumps({'k2tid': '1', 'mvl-atts': [
            {'att-id': f'a{i}', 'att-url': url} for i, url in enumerate(urls)]}))
        got = self.work / 'got'
        got.mkdir(exist_ok=True)
        config = self.work / 'curl'
        config.write_text(''.join(f'url = "{url}"\noutput = "{got}/{i}"\n'
                                  for i, url in enumerate(urls)))
        return pairs(rounds, lambda: Run([TOOL, 'deliver', '--strict', str(push)]),
                     lambda: Run(['curl', '-q', '--silent', '--fail', '--parallel', *more,
                                  '--config', str(config)]))


def seconds(value):
    for scale, unit in ((1, 's'), (1e3, 'ms'), (1e6, 'µs'), (1e9, 'ns')):
        if value * scale >= 1:
            break
    return f'{value * scale:.3g} {unit}'


def megabytes(value):
    return f'{value / MEGABYTE:.1f} MB'


def functions():
    """The medians of the benchmarks in seconds, by name, taken in a random order."""
    ran = subprocess.run(
        [RELEASE / 'bench/library_benchmark', '--benchmark_format=json',
         '--benchmark_repetitions=9', '--benchmark_min_time=0.02',
         '--benchmark_enable_random_interleaving=true', '--benchmark_report_aggregates_only=true'],
        check=True, capture_output=True, text=True)
    found = json.loads(ran.stdout)['benchmarks']
    failed = [each['name'] for each in found if each.get('error_occurred')]
    if failed:
        sys.exit(f'benchmarks failed: {failed}')
    return {each['run_name']: each['cpu_time'] / 1e9 for each in found
            if each.get('aggregate_name') == 'median'}


def types(table, times):
    ours = times['typeOfContent']
    for peer, name, limit in (('typeByLoop', 'a bare loop over the signatures', 0.2),
                              ('typeByLibmagic', 'libmagic', 2e-5)):
        ratio = ours / times[peer]
        table.add('type by content, no match', seconds(ours), f'{name} {seconds(times[peer])}',
                  ratio, f'{ratio:.2g}', limit)


def filling(table, times):
    """The worst of three sizes: every filling counts."""
    for peer, name, limit in (
            ('withCommon', 'a find-and-replace loop over the same parameters', 1.5),
            ('given', 'the loop over the given ones alone', None)):
        ratio, size = max((times[f'filledURL/bars/{size}'] / times[f'findAndReplace/{peer}/{size}'],
                           size) for size in ('300/15', '4096/150', '30000/1000'))
        table.add('filling a template, the worst of three sizes',
                  seconds(times[f'filledURL/bars/{size}']),
                  f'{name} {seconds(times[f"findAndReplace/{peer}/{size}"])}',
                  ratio, f'{ratio:.2f}', limit)


def filling_curves(times):
    names = (('filledURL/bars', 'filling'), ('findAndReplace/withCommon', 'find and replace'))
    for file, title, axis, sizes, index in (
            ('filling-by-length', 'Filling a template with 15 parameters', 'bytes',
             [f'{n}/15' for n in (1000, 3000, 10000, 30000, 100000)], 0),
            ('filling-by-parameters', 'Filling a template of 30,000 bytes', 'parameters',
             [f'30000/{n}' for n in (1, 10, 100, 300, 1000)], 1)):
        chart(OUT / f'{file}.svg', title, axis, 'µs', {
            label: [(int(size.split('/')[index]), times[f'{name}/{size}'] * 1e6) for size in sizes]
            for name, label in names})


def deliveries(table, work):
    limits = {1: None, 8: None, 64: 1.0, 256: 1.0}
    rounds = {1: 31, 8: 31, 64: 21, 256: 15}
    times = {'deliver': [], 'curl --parallel': []}
    peaks = {'deliver': [], 'curl --parallel': []}
    measured = Deliveries(work)
    with measured.origin:
        for count, limit in limits.items():
            made = measured.measure(count, MEGABYTE, rounds[count])
            ours, peer, ratio = compared(made, 'wall')
            table.add(f'deliver {count} of 1 MB', seconds(ours), f'curl --parallel {seconds(peer)}',
                      ratio, f'{ratio:.2f}', limit)
            memory = compared(made, 'peak')
            for kind, name in enumerate(times):
                times[name].append((count, (ours, peer)[kind] * 1e3))
                peaks[name].append((count, memory[kind] / MEGABYTE))
        one, many = (peaks['deliver'][i][1] * MEGABYTE for i in (0, -1))
        table.add('peak memory of 256, more than of one', megabytes(many), f'one {megabytes(one)}',
                  (many - one) / MEGABYTE, megabytes(many - one), 4, ' MB')
        at_once = compared(measured.measure(256, MEGABYTE, 5, ('--parallel-max', '256')), 'peak')
        for name, (ours, peer, ratio), limit in (('256 at once', at_once, 1.0),
                                                 ('50 at once', memory, None)):
            table.add('peak memory of 256', megabytes(ours), f'curl, {name} {megabytes(peer)}',
                      ratio, f'{ratio:.2f}', limit)
        by_size = {name: [] for name in times}
        for size in (10_000, 100_000, MEGABYTE, 9 * MEGABYTE):
            for name, peak in zip(by_size, compared(measured.measure(8, size, 5), 'peak')):
                by_size[name].append((size, peak / MEGABYTE))
    chart(OUT / 'deliveries.svg', 'Delivering files of 1 MB', 'files', 'ms', times)
    chart(OUT / 'memory-by-number.svg', 'Peak memory, files of 1 MB', 'files', 'MB', peaks)
    chart(OUT / 'memory-by-size.svg', 'Peak memory, 8 files', 'bytes a file', 'MB', by_size)


def foreign(table, work):
    push = work / 'foreign.json'
    push.write_text(json.dumps({'aps': {'alert': 'Hello', 'mutable-content': 1}}))
    ours, peer, ratio = compared(pairs(31, lambda: Run([TOOL, 'deliver', str(push)]),
                                       lambda: Run(['curl', '--version'])), 'cpu')
    table.add('a foreign push handed back, processor time', seconds(ours),
              f'curl --version {seconds(peer)}', ratio, f'{ratio:.2f}')


def payload(number, size):
    """A varied push of about `size` bytes: one to three attachments, now and then plain http, an
    unknown extension or a tag that nothing fills."""
    pick = random.Random(number)
    push = {
        'aps': {'alert': {'title': f'Offer {number}', 'body': 'Look, listen and see what is new.'},
                'mutable-content': 1},
        'k2tid': str(number), 'level': pick.randrange(9),
        'mvl-tk': {'url': 'https://track.example/v1',
                   'display': 'seen?u=|uid|&d=|idfv|&s=|s|&p=' + pick.choice(['|push|', '|pull|']),
                   'params': {'uid': f'u-{pick.randrange(10 ** 6)}', 'push': number}},
        'mvl-atts': [{'att-id': f'picture-{i}', 'att-url': '%s://cdn.example/media/%d/file.%s' % (
            pick.choice(['https', 'http']), number, pick.choice(['png', 'jpg', 'mp3', 'JPG', 'webp']))}
            for i in range(1 + number % 3)],
        'k2tb': [{'bid': 'buy', 'ccp': {'sku': str(number)}, 'delay-dismiss': True}],
        'note': ''}
    push['note'] = 'n' * max(0, size - len(json.dumps(push)))
    return json.dumps(push) + '\n'


def payloads(file, count, size):
    with open(file, 'w', encoding='ascii') as out:
        out.writelines(payload(number, size) for number in range(count))
    return str(file)


def inspection(table, work):
    count = 100_000
    lines = payloads(work / 'lines', count, 1000)
    one = {min(os.sched_getaffinity(0))}
    both = set(sorted(os.sched_getaffinity(0))[:2])
    has_jobs = '--jobs' in subprocess.run([TOOL, 'inspect', '--help'], capture_output=True,
                                          text=True, check=True).stdout
    inspect = [TOOL, 'inspect', '--jsonl']

    def alone():
        return Run(inspect + (['--jobs', '1'] if has_jobs else []), lines, one)

    for peer, command, limit in (('parsing alone', [PARSE], 1.0),
                                 ('jq -c .', ['jq', '-c', '.'], None)):
        made = pairs(3, alone, lambda command=command: Run(command, lines, one), FOUND)
        ours, other, ratio = compared(made, 'cpu')
        table.add(f'inspect --jsonl, {count:,} payloads of 1 KB, processor time', seconds(ours),
                  f'{peer} {seconds(other)}', ratio, f'{ratio:.2f}', limit)
    if not has_jobs or len(both) < 2:
        reason = 'there is no --jobs' if not has_jobs else 'there is one core only'
        table.add('the same on two cores, time', '', reason, None, '', round(1 / 1.8, 2))
        return
    ours, other, ratio = compared(
        pairs(3, lambda: Run(inspect + ['--jobs', '2'], lines, both), alone, FOUND), 'wall')
    table.add('the same on two cores, time', seconds(ours), f'on one {seconds(other)}', ratio,
              f'{ratio:.2f}', round(1 / 1.8, 2))


def inspection_curve(work):
    points = {'inspect --jsonl': [], 'parsing alone': []}
    for size in (1000, 2000, 4000, 8000, 16000, 32000):
        count = 20_000_000 // size
        lines = payloads(work / 'lines', count, size)
        made = pairs(3, lambda: Run([TOOL, 'inspect', '--jsonl'], lines),
                     lambda: Run([PARSE], lines), FOUND)
        for name, value in zip(points, compared(made, 'cpu')):
            points[name].append((size, value / count * 1e6))
    chart(OUT / 'inspect.svg', 'Inspecting a payload', 'bytes', 'µs', points)


def stripped(library, work):
    copy = work / 'library.so'
    subprocess.run(['strip', '-o', copy, library], check=True)
    return copy.stat().st_size


def sizes(table, work):
    none = ROOT / 'build/none/libMorveluneExtension.so'
    linux = RELEASE / 'libMorveluneExtension.so'
    size, whole = stripped(none, work), stripped(linux, work)
    table.add('stripped library, logic and boundary alone', f'{size:,} bytes',
              f'with the Linux platform {whole:,} bytes', size / 1000, f'{size / 1000:.0f} KB', 150,
              ' KB')
    exported = subprocess.run([ROOT / 'scripts/check-exports.sh', linux, ROOT / 'include'],
                              capture_output=True, text=True, check=False)
    foreign_names = max(exported.returncode, len(exported.stderr.splitlines()) - 1)
    table.add('exported names that are not public', str(foreign_names),
              f'of {exported.stdout.strip() or "more"}', foreign_names, str(foreign_names), 0)


def publish(table):
    """Puts the table and the curves into docs."""
    page = ROOT / 'docs/performance.md'
    begin, end = '<!-- table -->\n', '<!-- end -->\n'
    before, rest = page.read_text().split(begin)
    page.write_text(before + begin + table.text() + end + rest.split(end)[1])
    for curve in OUT.glob('*.svg'):
        shutil.copy(curve, ROOT / 'docs/curves')


def main():
    if sys.argv[1:] not in ([], ['--docs']):
        sys.exit('usage: scripts/bench.sh [--docs]')
    OUT.mkdir(parents=True, exist_ok=True)
    table = Table()
    with tempfile.TemporaryDirectory() as name:
        work = Path(name)
        work.chmod(0o755)  # nginx may run its worker as another user
        times = functions()
        types(table, times)
        deliveries(table, work)
        foreign(table, work)
        inspection(table, work)
        inspection_curve(work)
        filling(table, times)
        filling_curves(times)
        sizes(table, work)
    (OUT / 'table.md').write_text(table.text())
    print(table.text(), end='')
    if sys.argv[1:]:
        publish(table)


if __name__ == '__main__':
    main()
