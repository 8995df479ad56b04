# The OpenBench entry point: "make EXE=path/name" builds the release engine there, with CXX as
# the compiler if given. CMake does the work in a folder of its own, beside the developers' build.
EXE ?= torvy
BUILD_DIR ?= build-make
CMAKE_FLAGS := -G Ninja -DCMAKE_BUILD_TYPE=Release -DTORVY_TESTS=OFF -DTORVY_BENCH=OFF
ifneq ($(origin CXX),default)
CMAKE_FLAGS += -DCMAKE_CXX_COMPILER=$(CXX)
endif

.PHONY: all clean
all:
	cmake -S . -B $(BUILD_DIR) $(CMAKE_FLAGS)
	cmake --build $(BUILD_DIR) --target torvy -j2
	mkdir -p $(dir $(EXE))
	cp $(BUILD_DIR)/torvy $(EXE)

clean:
	rm -rf $(BUILD_DIR)
