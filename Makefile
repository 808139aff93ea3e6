# Every task of the project, one command each.
.PHONY: run test stress lint bench sanitize install package packages release dev

run: release
	build/release/tesseldrive --home build/example

test: dev
	ctest --test-dir build/dev --output-on-failure --no-tests=error --parallel 2

stress: packages
	cmake --preset dev
	cmake --build build/dev --target tests_stress
	build/dev/tests/tests_stress --minutes $(or $(MINUTES),10) --seed $(or $(SEED),100)

lint: packages
	scripts/lint

bench: packages
	cmake --preset bench
	cmake --build build/bench
	build/bench/bench/tesseldrive_bench

sanitize: packages
	scripts/sanitize

install: release
	cmake --install build/release --prefix $(or $(PREFIX),/usr/local)

package: packages
	scripts/make-package

packages:
	@scripts/install-packages

release: packages
	cmake --preset release
	cmake --build build/release

dev: packages
	cmake --preset dev
	cmake --build build/dev
