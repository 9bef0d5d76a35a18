/** What the page's scripts export; functions given to page.evaluate() find it in the browser. */
declare const report: typeof import('../../../../host/report/page/main.js');
