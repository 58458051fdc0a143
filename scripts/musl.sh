#!/bin/bash
# Makes a C++ compiler for musl, which Debian lacks: the C++ library is built from Debian's source of
# GCC. Exceptions are unwound by LLVM's library, because GCC's asks the other libc for its tables.
#
#   scripts/musl.sh FOLDER     FOLDER/g++ then compiles and links as g++ does; some minutes
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/setup.sh
install_packages g++ make xz-utils musl-tools gcc-12-source libunwind-14-dev
mkdir -p "$1"
cd "$1"
[ ! -x g++ ] || exit 0

specs=/usr/lib/x86_64-linux-musl/musl-gcc.specs
tar xf /usr/src/gcc-12/gcc-12.*.tar.xz --exclude 'testsuite/*/*' --exclude 'gcc-12.*/gcc/*/*'
mkdir -p build out/lib
(
  cd build
  CC=musl-gcc CXX="g++ -specs $specs" CFLAGS=-O2 CXXFLAGS=-O2 ../gcc-12.*/libstdc++-v3/configure \
    --build=x86_64-linux-gnu --host=x86_64-linux-musl --disable-multilib --disable-shared \
    --disable-nls --disable-libstdcxx-pch --prefix="$PWD/../out" \
    --with-gxx-include-dir="$PWD/../out/include/c++"
  make -j "$(nproc)"
  make install
) > build.log 2>&1
# Called before the library of unwinding gives up only.
echo 'void __fprintf_chk(void) { __builtin_trap(); }' | musl-gcc -w -O2 -x c -c - -o out/lib/fortify.o
cp /usr/lib/llvm-14/lib/libunwind.a out/lib
cat > g++.new << END
#!/bin/sh
out=$PWD/out
case " \$* " in
  *" -c "* | *" -E "*) ;;
  *) set -- "\$@" -static-libgcc -Wl,--eh-frame-hdr,--whole-archive,-l:libunwind.a,--no-whole-archive \\
       "\$out/lib/fortify.o" ;;
esac
exec g++ -specs $specs -I"\$out/include/c++" -I"\$out/include/c++/x86_64-linux-musl" -L"\$out/lib" "\$@"
END
chmod +x g++.new
rm -r build gcc-12.*
mv g++.new g++
