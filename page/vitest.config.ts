import { defineConfig } from "vitest/config";

/** Tests of modules, tests in a browser, and measurements in one, which are run one after the other. */
export default defineConfig({
    test: {
        projects: [
            { test: { name: "unit", include: ["tests/{data,model,view}/**/*.test.ts"] } },
            { test: { name: "program", include: ["tests/program/**/*.test.ts"], testTimeout: 120_000 } },
            {
                test: {
                    name: "browser",
                    include: ["tests/browser/**/*.test.ts"],
                    testTimeout: 60_000,
                    hookTimeout: 60_000,
                    fileParallelism: false,
                },
            },
            {
                test: {
                    name: "bench",
                    include: ["bench/**/*.bench.ts"],
                    testTimeout: 600_000,
                    hookTimeout: 600_000,
                    fileParallelism: false,
                },
            },
        ],
    },
});
