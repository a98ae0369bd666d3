# Everything a person or CI does with this project. Builds are CMake presets, below build/.

.PHONY: all test sanitize fuzz release install package install-check demo truth serve-check view-check server-check style lint bench format clean

all: build/dev/build.ninja
	cmake --build --preset dev

# Installs what is missing, builds, and runs every test.
test: all
	ctest --preset dev

# The same tests, those with a server too, under the sanitizers: of memory and undefined behaviour, then of threads.
sanitize: sanitize-asan sanitize-tsan

sanitize-%:
	tools/install-packages build sanitize server
	tools/without-aslr cmake --workflow --preset $*
	cmake --build --preset $* --target server_tests server_load
	tools/without-aslr tools/with-postgresql tests/host/postgresql/run build/$* 10

# Arbitrary input for every fuzz target, under the sanitizers of memory: for FUZZ_SECONDS, or FUZZ_RUNS inputs that are the same each time.
FUZZ_SECONDS = 60
fuzz:
	tools/install-packages build sanitize
	cmake --preset asan
	cmake --build --preset asan --target fuzz/all
	tools/without-aslr tools/fuzz $(if $(FUZZ_RUNS),runs $(FUZZ_RUNS),seconds $(FUZZ_SECONDS))

# Installs what is missing, builds, indexes a real repository and prints a page of it.
demo: build/dev/build.ninja
	tools/install-packages demo
	cmake --build --preset dev --target wiki-scope
	demo/run build/dev/host/wiki-scope

# Compares pages of real repositories with what the compilers of their languages know; needs minutes and the network.
truth: build/dev/build.ninja
	tools/install-packages truth
	cmake --build --preset dev --target wiki-scope
	truth/run build/dev/host/wiki-scope

# Has clients that others have written talk to the server; needs the network.
serve-check: build/dev/build.ninja
	tools/install-packages demo
	cmake --build --preset dev --target wiki-scope
	clients/run build/dev/host/wiki-scope

# Has a browser look at pages of HTML: links, tools, colors, access; needs the network once.
view-check: build/dev/build.ninja
	tools/install-packages view
	cmake --build --preset dev --target wiki-scope
	tests/view/run build/dev/host/wiki-scope

# Has pages and imports work with a PostgreSQL server of its own, then for LOAD_SECONDS under load while it fails.
LOAD_SECONDS = 60
server-check: all
	tools/install-packages server
	cmake --build --preset dev --target server_tests server_load
	tools/with-postgresql tests/host/postgresql/run build/dev $(LOAD_SECONDS)

# What the component and whole commands cost, as ratios.
bench:
	tools/install-packages build bench
	cmake --preset bench
	cmake --build --preset bench
	build/bench/bench/page_bench
	tools/with-postgresql build/bench/bench/command_bench build/bench/host/wiki-scope postgresql:///postgres
	build/bench/bench/memory_bench
	build/bench/bench/checkout_bench build/bench/host/wiki-scope .

# Puts the library, its headers and the command below PREFIX, or below DESTDIR/PREFIX for a package.
PREFIX = /usr/local
install: release
	cmake --install build/release --prefix "$(PREFIX)"

# What is installed, and nothing else.
release:
	tools/install-packages release
	host/sources/grammars/fetch build/grammars
	cmake --preset release
	cmake --build --preset release

# A Debian package and an archive of the command, in build/release/packages.
package: release
	tools/install-packages package
	cmake --build --preset release --target package

# Installs the tested build, which compiles the same as the one for installing, into a temporary prefix, and uses what is
# there as a user of it would; and its packages on a bare system.
install-check: all
	tools/install-packages package install-check
	cmake --build --preset dev --target package
	cmake --preset release
	tools/check-install build/dev build/release
	tools/check-packages build/dev

# Formatting, and the scripts: no findings.
style:
	tools/install-packages style
	tools/check-style

# The same, static analyses, and the second compiler's warnings: no findings. What is as it was when nothing was found is
# skipped, in every checkout of a user. LINT_MARKS names another folder that remembers it.
lint: style
	tools/install-packages build sanitize bench lint
	tools/lint

format:
	tools/install-packages style
	tools/sources | xargs -0 clang-format -i

clean:
	rm -rf build

build/dev/build.ninja: CMakePresets.json
	tools/install-packages build
	host/sources/grammars/fetch build/grammars
	cmake --preset dev
