import { defineConfig } from "vitest/config";

/** So long that a machine with other work to do is no reason to fail. */
const patient = { testTimeout: 300_000, hookTimeout: 300_000 };

/** Tests of modules, of pages of the program, in a browser, and measurements in one; the last two one by one. */
export default defineConfig({
    test: {
        projects: [
            {
                test: {
                    ...patient,
                    name: "unit",
                    include: ["tests/{data,model,view}/**/*.test.ts"],
                    isolate: false,
                },
            },
            { test: { ...patient, name: "program", include: ["tests/program/**/*.test.ts"] } },
            {
                test: {
                    ...patient,
                    name: "browser",
                    include: ["tests/browser/**/*.test.ts"],
                    fileParallelism: false,
                    expect: { poll: { timeout: 60_000 } },
                },
            },
            {
                test: { ...patient, name: "bench", include: ["bench/**/*.bench.ts"], fileParallelism: false },
            },
        ],
    },
});
