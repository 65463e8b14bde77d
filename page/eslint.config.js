import js from "@eslint/js";
import { defineConfig } from "eslint/config";
import tseslint from "typescript-eslint";

/** Layers of src, from the left to the right: each imports from itself and from those before it only. */
const layers = ["data", "model", "view"];

/**
 * What a layer may import and use.
 * @param {string} layer
 * @returns {import("eslint/config").Config}
 */
const importsOf = (layer) => ({
    files: [`src/${layer}/**/*.ts`],
    rules: {
        "no-restricted-imports": [
            "error",
            {
                patterns: layers.slice(layers.indexOf(layer) + 1).map((later) => ({
                    group: [`**/${later}/*`],
                    message: `${layer} knows nothing of ${later}`,
                })),
            },
        ],
        // What has no page must run without one, in tests and in workers.
        "no-restricted-globals": layer === "view" ? "off" : ["error", "document", "window"],
    },
});

export default defineConfig(
    { ignores: ["dist", "node_modules"] },
    js.configs.recommended,
    tseslint.configs.strictTypeChecked,
    {
        languageOptions: {
            parserOptions: { projectService: true },
        },
        rules: {
            // Indices of typed arrays are within their bounds, and a check in a loop over a million rules costs.
            "@typescript-eslint/no-non-null-assertion": "off",
            "@typescript-eslint/restrict-template-expressions": ["error", { allowNumber: true }],
            "max-lines-per-function": ["error", { max: 60, skipBlankLines: true, skipComments: true }],
            complexity: ["error", 14],
            eqeqeq: "error",
            "prefer-const": "error",
        },
    },
    ...layers.map(importsOf),
    {
        files: ["scripts/**"],
        languageOptions: {
            globals: {
                process: "readonly",
                console: "readonly",
                Buffer: "readonly",
                requestAnimationFrame: "readonly",
                setTimeout: "readonly",
            },
        },
    },
    { files: ["tests/**", "bench/**"], rules: { "max-lines-per-function": "off" } },
);
