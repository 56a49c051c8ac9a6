import js from "@eslint/js";
import globals from "globals";

export default [
    { ignores: ["**/node_modules/", "build*/", "Web/Engine/"] },
    js.configs.recommended,
    {
        languageOptions: { globals: { ...globals.browser, ...globals.node } },
        linterOptions: { reportUnusedDisableDirectives: "error" },
        rules: {
            curly: ["error", "multi-line"],
            eqeqeq: "error",
            "no-shadow": "error",
            "no-unused-vars": ["error", { argsIgnorePattern: "^_" }],
            "no-var": "error",
            "object-shorthand": "error",
            "prefer-const": "error",
        },
    },
];
