// Shows the login page in the theme last used in this browser.
document.documentElement.dataset.theme = localStorage.getItem('navora.theme') || 'system';
