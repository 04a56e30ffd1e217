"""Breaks the code in small ways and runs the tests, which must notice. See mutate.sh."""
import argparse, asyncio, contextlib, glob, os, pathlib, random, shutil, signal, subprocess, sys
import tempfile, time, typing

from mutations import mutations

# What is broken, and the test programs that must notice.
AREAS = {
    "logic": (["detection/*", "extension/*", "payload/*", "util/*"], ["logic_tests"]),
    "platform": (["platform/*.cpp"], ["logic_tests", "platform_tests"]),
}
# A mutant survives when the tests pass in both builds: a folder each, and its sanitizers.
BUILDS = {"memory": "address,undefined", "threads": "thread"}
# Its indented lines are mutants; the text above them says why nothing can be seen.
EXPLAINED = "scripts/explained-mutants.txt"


class Mutant(typing.NamedTuple):
    area: str
    file: str
    description: str
    text: str  # the whole of the file


class Workshop:
    """A copy of the tree with its builds, in which one mutant after the other is tried."""

    def __init__(self, folder, areas):
        self.tree, self.temporary, self.log = folder / "tree", folder / "tmp", folder / "log"
        self.limits = {}  # in seconds, by build and test program
        self.programs = sorted({name for area in areas for name in AREAS[area][1]})
        self.environment = dict(
            os.environ, TMPDIR=str(self.temporary), GTEST_FAIL_FAST="1", CCACHE_BASEDIR=str(folder),
            # A mutant that never ends should not take all memory until its time is up.
            ASAN_OPTIONS="hard_rss_limit_mb=3000", TSAN_OPTIONS="hard_rss_limit_mb=3000")
        self.temporary.mkdir(parents=True)
        listed = ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"]
        for name in subprocess.check_output(listed, text=True).split("\0"):
            if os.path.isfile(name):
                (self.tree / name).parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(name, self.tree / name)

    async def runs(self, seconds, folder, *command):
        """Whether the command succeeds in time. None of its processes stays."""
        with open(self.log, "wb") as log:
            process = await asyncio.create_subprocess_exec(
                *command, cwd=folder, env=self.environment, start_new_session=True,
                stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        try:
            return await asyncio.wait_for(process.wait(), seconds) == 0
        except asyncio.TimeoutError:
            return False
        finally:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(process.pid, signal.SIGKILL)
            await process.wait()

    async def builds(self, build, programs):
        return await self.runs(900, self.tree, "ninja", "-C", build, *programs)

    async def passes(self, build, program):
        limit = self.limits.get((build, program), 300)
        return await self.runs(limit, self.temporary, self.tree / build / "tests" / program)

    async def prepare(self):
        """Builds what is not broken. Its tests must pass; they tell how long a mutant's may take."""
        async def must(succeed):
            if not await succeed:
                raise RuntimeError(self.log.read_text(errors="replace")[-3000:])

        for build, sanitizers in BUILDS.items():
            await must(self.runs(
                300, self.tree, "cmake", "-S", ".", "-B", build, "-G", "Ninja",
                f"-DMORVELUNE_SANITIZE={sanitizers}", "-DCMAKE_CXX_FLAGS=-w -D_GLIBCXX_ASSERTIONS",
                "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
                "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST"))
            await must(self.builds(build, self.programs))
            for program in self.programs:
                start = time.monotonic()
                await must(self.passes(build, program))
                self.limits[build, program] = 20 + 10 * (time.monotonic() - start)

    async def outcome(self, mutant):
        programs = AREAS[mutant.area][1]
        for build in BUILDS:
            if not await self.builds(build, programs):
                return "not compiled"
            for program in programs:
                if not await self.passes(build, program):
                    return "killed"
        return "survived"

    async def try_all(self, mutants, report):
        await self.prepare()
        for mutant in mutants:
            source = self.tree / mutant.file
            original = source.read_text()
            source.write_text(mutant.text)
            report(mutant, await self.outcome(mutant))
            source.write_text(original)


async def try_all(mutants, explained, options):
    """How many had which outcome. Prints those that nobody expects."""
    counts = dict.fromkeys(["killed", "survived", "explained", "not compiled"], 0)

    def report(mutant, outcome):
        if mutant.description in explained and outcome != "not compiled":
            if outcome == "killed":
                print(f"explained, and yet killed: {mutant.description}", flush=True)
            outcome = "explained" if outcome == "survived" else outcome
        elif outcome == "survived":
            print(mutant.description, flush=True)
        counts[outcome] += 1
        if sys.stderr.isatty():
            print(f"{sum(counts.values())} of {len(mutants)}", end="\r", file=sys.stderr)

    with tempfile.TemporaryDirectory(prefix="mutate-") as folder:
        workshops = [Workshop(pathlib.Path(folder, str(i)), options.areas) for i in range(options.jobs)]
        for each in [signal.SIGTERM, signal.SIGHUP]:
            asyncio.get_running_loop().add_signal_handler(each, asyncio.current_task().cancel)
        try:
            async with asyncio.TaskGroup() as group:
                # Neighbours in a file go to one workshop, which then compiles that file alone.
                bounds = [len(mutants) * i // options.jobs for i in range(options.jobs + 1)]
                for workshop, first, last in zip(workshops, bounds, bounds[1:]):
                    group.create_task(workshop.try_all(mutants[first:last], report))
        except* RuntimeError as failed:
            sys.exit(f"{failed.exceptions[0]}\nNothing is broken yet, and this does not succeed.")
    return counts


def main():
    parser = argparse.ArgumentParser(prog="mutate.sh", description="Breaks the code, runs the tests.")
    parser.add_argument("areas", nargs="*", default=list(AREAS), help=f"of {', '.join(AREAS)}; all")
    parser.add_argument("--seed", type=int, default=1, help="of the sample; 1")
    parser.add_argument("--count", type=int, default=220, help="how many mutants, 0 for all; 220")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="how many at once")
    parser.add_argument("--only", default="", help="those whose description holds this text")
    parser.add_argument("--list", action="store_true", help="print the descriptions and do nothing")
    options = parser.parse_args()

    every = [Mutant(area, file, f"{file}: {description}", text)
             for area, (patterns, _) in AREAS.items() for pattern in patterns
             for file in sorted(glob.glob(pattern))
             for description, text in mutations(pathlib.Path(file).read_text())]
    explained = {line.strip() for line in open(EXPLAINED) if line.startswith("  ")}
    gone = explained - {mutant.description for mutant in every}
    if gone:
        sys.exit("\n".join(["explained, and yet gone:", *sorted(gone)]))
    mutants = [mutant for mutant in every
               if mutant.area in options.areas and options.only in mutant.description]
    if 0 < options.count < len(mutants):
        chosen = random.Random(options.seed).sample(range(len(mutants)), options.count)
        mutants = [mutants[i] for i in sorted(chosen)]
    if options.list:
        return print("\n".join(mutant.description for mutant in mutants))
    try:
        counts = asyncio.run(try_all(mutants, explained, options))
    except (KeyboardInterrupt, asyncio.CancelledError):
        return 130
    print(f"{len(mutants)} mutants:", ", ".join(f"{count} {name}" for name, count in counts.items()))
    return 1 if counts["survived"] else 0


if __name__ == "__main__":
    sys.exit(main())
