// The rules for the scripts of the report page and of its tests; scripts/check-page applies them.

import js from '@eslint/js';
import globals from 'globals';

const markup = 'Texts come from recordings: put them in as text, never as markup.';

export default [
    js.configs.recommended,
    {
        linterOptions: { reportUnusedDisableDirectives: 'error' },
        rules: {
            'array-callback-return': 'error',
            'consistent-return': 'error',
            'eqeqeq': 'error',
            'max-len': ['error', { code: 120 }],
            'max-lines': ['error', 400],
            'max-lines-per-function': ['error', 60],
            'no-constructor-return': 'error',
            'no-else-return': 'error',
            'no-implicit-coercion': 'error',
            'no-nested-ternary': 'error',
            'no-param-reassign': 'error',
            'no-promise-executor-return': 'error',
            'no-self-compare': 'error',
            'no-shadow': 'error',
            'no-template-curly-in-string': 'error',
            'no-throw-literal': 'error',
            'no-unmodified-loop-condition': 'error',
            'no-unreachable-loop': 'error',
            'no-unused-expressions': 'error',
            // tsc says the same, and leaves out what begins with _ or comes before a used argument.
            'no-unused-vars': 'off',
            'no-useless-rename': 'error',
            'no-useless-return': 'error',
            'no-var': 'error',
            'object-shorthand': 'error',
            'prefer-arrow-callback': 'error',
            'prefer-const': 'error',
            'prefer-template': 'error',
            'radix': 'error',
            'require-atomic-updates': 'error',
        },
    },
    {
        files: ['host/report/page/*.js'],
        ignores: ['host/report/page/build.js'],
        languageOptions: { globals: globals.browser },
        rules: {
            'no-alert': 'error',
            'no-console': 'error',
            'no-eval': 'error',
            'no-restricted-properties': ['error',
                ...['innerHTML', 'outerHTML', 'insertAdjacentHTML', 'write', 'setHTMLUnsafe'].map(
                    (property) => ({ property, message: markup }))],
        },
    },
    {
        files: ['host/report/page/build.js', 'host/report/page/check/*.js'],
        languageOptions: { globals: globals.node },
    },
    {
        // Their functions run in Node, those given to page.evaluate() in the browser.
        files: ['tests/host/report/page/**/*.js'],
        languageOptions: { globals: { ...globals.node, ...globals.browser, report: 'readonly' } },
    },
];
